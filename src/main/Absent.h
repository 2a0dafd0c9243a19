#pragma once

#include "platform/Application.h"
#include "platform/ImageCodec.h"
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

struct NoImageCodec final : ImageCodec {
    std::variant<Bitmap, ImageError> decode(std::string_view) const override
    {
        return ImageError::unknownFormat;
    }
    std::variant<PixelSize, ImageError> pixelSize(std::string_view) const override
    {
        return ImageError::unknownFormat;
    }
    std::optional<std::string> encodePng(const Bitmap&) const override { return std::nullopt; }
    std::optional<std::string> encodeJpeg(const Bitmap&, double) const override
    {
        return std::nullopt;
    }
};

struct NoTextRecognizer final : TextRecognizer {
    void recognize(Image, const RecognitionRequest&, RecognitionReply) override { }
};

struct NoUpdater final : Updater {
    void checkForUpdates() override { }
};

} // namespace tallowbay::absent
