#pragma once

#include "platform/TextRecognizer.h"

// What a desktop without the thing in question answers. LinuxDesktop takes these for seams that it
// has no backend for yet; each goes when its backend comes.
namespace tallowbay::absent {

struct NoTextRecognizer final : TextRecognizer {
    void recognize(Image, const RecognitionRequest&, RecognitionReply) override { }
};

} // namespace tallowbay::absent
