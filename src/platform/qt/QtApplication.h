#pragma once

#include "platform/Application.h"
#include "platform/qt/TerminationSignals.h"

#include <optional>

namespace tallowbay::qt {

// The running QApplication. It ends on terminate(), on a signal that asks it to, and with the
// desktop's session; each way run() returns in good order.
class QtApplication final : public Application {
public:
    QtApplication();
    void terminate() override;

    // The main loop. Returns the exit status.
    int run();

    // After the main loop: a signal that asks the program to end now ends it at once.
    void endAtNextSignal() { endingSignals.reset(); }

private:
    std::optional<TerminationSignals> endingSignals;
};

} // namespace tallowbay::qt
