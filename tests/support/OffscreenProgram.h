#pragma once

#include <QApplication>

#include <chrono>
#include <functional>

namespace tallowbay::test {

// A program of Qt's on screens that nobody sees, where no window manager matters.
class OffscreenProgram {
public:
    explicit OffscreenProgram(const QByteArray& platform = "offscreen")
        : environment(platform)
    {
        QApplication::setQuitOnLastWindowClosed(false);
    }
    ~OffscreenProgram() { settle(); } // what was to be deleted later is deleted

    // False after a generous time.
    static bool runUntil(const std::function<bool()>& condition)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < end)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        return condition();
    }

    // Handles what is waiting, and what comes of that.
    static void settle()
    {
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents();
        }
    }

private:
    struct Environment {
        explicit Environment(const QByteArray& platform) { qputenv("QT_QPA_PLATFORM", platform); }
    };

    Environment environment; // Qt reads it when it starts
    int argumentCount = 1;
    char name[10] = "tallowbay";
    char* arguments[2] = {name, nullptr};
    QApplication application{argumentCount, arguments};
};

} // namespace tallowbay::test
