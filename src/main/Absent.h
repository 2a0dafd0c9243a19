#pragma once

#include "platform/Keys.h"
#include "platform/Permissions.h"
#include "platform/TextRecognizer.h"

// What a desktop without the thing in question answers. LinuxDesktop takes these for seams that it
// has no backend for yet; each goes when its backend comes.
namespace tallowbay::absent {

struct NoKeyTap final : KeyTap {
    std::optional<Subscription> start(Handler) override { return std::nullopt; }
};

struct NoKeyPoster final : KeyPoster {
    void post(KeyCode, KeyDirection, EventFlags) override { }
};

struct NoPermissions final : Permissions {
    Permission accessibility() const override { return {}; }
    Permission screenRecording() const override { return {}; }
};

struct NoTextRecognizer final : TextRecognizer {
    void recognize(Image, const RecognitionRequest&, RecognitionReply) override { }
};

} // namespace tallowbay::absent
