#include "app/OCRTrigger.h"

#include "app/ScreenshotBatch.h"
#include "ocr/OCRCapture.h"
#include "platform/Console.h"
#include "platform/Permissions.h"
#include "ui/ToastGate.h"

#include <utility>

namespace tallowbay {

OCRTrigger::OCRTrigger(const Platform& platform, ToastGate& toasts, ScreenshotBatch& batch)
    : platform(platform)
    , toasts(toasts)
    , batch(batch)
{
}

bool OCRTrigger::triggerOCR()
{
    // A screen that only the user must open up is asked for by the capture itself.
    const Permission screen = platform.permissions.screenRecording();
    if (screen.state == Permission::State::unavailable) {
        platform.console.line("Text extraction refused: " + screen.reason);
        toasts.show(screen.reason);
        return false;
    }
    if (std::exchange(selecting, true))
        return true;
    batch.beginTextExtraction();
    OCRCapture::run(
        platform, lifetime.guard([this] { selecting = false; }),
        lifetime.guard([this](const std::optional<std::string>& text) { finishOCR(text); }));
    return true;
}

void OCRTrigger::finishOCR(const std::optional<std::string>& text)
{
    if (!text || text->empty()) {
        batch.endTextExtractionWithoutText();
        toasts.show("No Text Found");
        return;
    }
    const std::size_t count = batch.endTextExtraction(*text);
    toasts.show(std::to_string(count) + " Text(s) Copied");
}

} // namespace tallowbay
