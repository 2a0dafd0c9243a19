#pragma once

#include "desktop/support/XServer.h"

#include <QApplication>
#include <QColor>
#include <QImage>

#include <functional>
#include <memory>
#include <string>

namespace tallowbay::test {

// A private X server with a plain background and, in this process, a Qt program on it.
class QtDesktop {
public:
    explicit QtDesktop(const XServer::Options& = {});
    ~QtDesktop();

    XServer& server() { return xServer; }

    // Runs Qt's main loop until the condition holds; false after a generous time.
    bool runUntil(const std::function<bool()>& condition);
    void runFor(std::chrono::milliseconds);

    // What a person sees at this place, in the server's pixels.
    QColor pixel(int x, int y) const;
    QImage picture(const QRect&) const;

    // Gives a window the keyboard; false if there is none of that name.
    bool focusWindow(const std::string& name) const;
    std::string focusedWindowName() const;

    // The name of the window that has the keyboard: from the first question on another program's,
    // unless one of ours takes it.
    std::string keyboardOwner();

    const QColor background{60, 90, 120};

private:
    // Qt reads these when it starts.
    struct EnvironmentOf {
        explicit EnvironmentOf(const XServer&);
    };

    XServer xServer;
    EnvironmentOf environment;
    int argumentCount = 1;
    char name[10] = "tallowbay";
    char* arguments[2] = {name, nullptr};
    QApplication application;
    std::unique_ptr<ChildProcess> typedInto;
};

} // namespace tallowbay::test
