#pragma once

#include "base/Lifetime.h"
#include "platform/Platform.h"

#include <optional>
#include <string>

namespace tallowbay {

class ScreenshotBatch;
class ToastPresenter;

// What the text extraction does to the batch: each recognised text joins the texts of the batch,
// and all of them stand on the pasteboard, in place of the batch's screenshots.
//
// Thread: main queue.
class OCRTrigger {
public:
    OCRTrigger(const Platform&, ToastPresenter&, ScreenshotBatch&);

    // Lets the user select a region. Until its text is there, a paste does not end the batch. A
    // second call starts a second capture.
    void triggerOCR();

private:
    void finishOCR(const std::optional<std::string>& text);
    void addText(const std::string&);
    void showToast(const std::string& message);

    const Platform platform;
    ToastPresenter& toasts;
    ScreenshotBatch& batch;
    Lifetime lifetime;
};

} // namespace tallowbay
