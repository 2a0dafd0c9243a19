#pragma once

#include "base/Lifetime.h"
#include "platform/Platform.h"

#include <optional>
#include <string>

namespace tallowbay {

class ScreenshotBatch;
class ToastGate;

// Extracts the text of a region that the user selects, for the batch, and tells the user how that
// ended.
//
// Thread: main queue.
class OCRTrigger {
public:
    OCRTrigger(const Platform&, ToastGate&, ScreenshotBatch&);

    // Lets the user select a region. Until its text is there, a paste does not end the batch. While
    // a selection is on the screen nothing more is started: it is what was asked for. False where
    // the session hides its screen: nothing starts then, and a toast and a line on the console say
    // why.
    bool triggerOCR();

private:
    void finishOCR(const std::optional<std::string>& text);

    const Platform platform;
    ToastGate& toasts;
    ScreenshotBatch& batch;
    bool selecting = false;
    Lifetime lifetime;
};

} // namespace tallowbay
