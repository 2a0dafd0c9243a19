#pragma once

#include "platform/Application.h"
#include "platform/qt/TerminationSignals.h"

#include <QObject>

#include <optional>

namespace tallowbay::qt {

// The running QApplication. It ends on terminate(), on a signal that asks it to, and with the
// desktop's session; each way run() returns in good order, and no window is asked whether it may
// close.
class QtApplication final : public Application {
public:
    QtApplication();
    void terminate() override;

    // The main loop. Returns the exit status.
    int run();

    // After the main loop: a signal that asks the program to end now ends it at once.
    void endAtNextSignal() { endingSignals.reset(); }

private:
    // By itself, Qt would close every window first, hidden ones too, and stay if one refuses.
    class QuitFilter final : public QObject {
    public:
        explicit QuitFilter(QtApplication& application)
            : application(application)
        {
        }
        bool eventFilter(QObject*, QEvent*) override;

    private:
        QtApplication& application;
    };

    std::optional<TerminationSignals> endingSignals;
    QuitFilter quitFilter{*this};
};

} // namespace tallowbay::qt
