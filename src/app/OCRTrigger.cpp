#include "app/OCRTrigger.h"

#include "app/ScreenshotBatch.h"
#include "ocr/OCRCapture.h"
#include "platform/Pasteboard.h"
#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"
#include "ui/ToastWindow.h"

namespace tallowbay {

namespace {

std::string joinedByBlankLines(const std::vector<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += all.empty() ? text : "\n\n" + text;
    return all;
}

} // namespace

OCRTrigger::OCRTrigger(const Platform& platform, ToastPresenter& toasts, ScreenshotBatch& batch)
    : platform(platform)
    , toasts(toasts)
    , batch(batch)
{
}

void OCRTrigger::triggerOCR()
{
    batch.ocrInProgress = true;
    OCRCapture::run(platform, lifetime.guard([this](const std::optional<std::string>& text) {
        finishOCR(text);
    }));
}

void OCRTrigger::finishOCR(const std::optional<std::string>& text)
{
    batch.ocrInProgress = false;
    if (!text || text->empty()) {
        showToast("No Text Found");
        return;
    }
    addText(*text);
    showToast(std::to_string(batch.pendingOCRTexts.size()) + " Text(s) Copied");
}

void OCRTrigger::addText(const std::string& text)
{
    batch.pendingOCRTexts.push_back(text);
    platform.pasteboard.clear();
    platform.pasteboard.writeText(joinedByBlankLines(batch.pendingOCRTexts));
    batch.lastClipboardWriteCount = platform.pasteboard.changeCount();
}

void OCRTrigger::showToast(const std::string& message)
{
    if (!boolValue(platform.defaults.standard(), "toastsDisabled", false))
        toasts.show(message);
}

} // namespace tallowbay
