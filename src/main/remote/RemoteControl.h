#pragma once

#include "app/Command.h"

#include <QDBusVirtualObject>

#include <functional>
#include <optional>
#include <string>

namespace tallowbay {

// Lets others on the session's message bus ask for commands, by the desktop's standard interface of
// programs: each command is an action, and to open something is to open the editor. How the program
// fares is told by an interface of its own.
//
// Thread: main queue. Needs the QCoreApplication.
class RemoteControl final : public QDBusVirtualObject {
public:
    // What the program answers with.
    struct Program {
        std::function<CommandResult(Command)> perform;
        std::function<void()> activate; // it was started again
        std::function<std::string()> status; // in lines for people
    };

    // Requests wait from now on until the main loop runs, so that none that comes early is lost.
    // Does nothing without a bus.
    RemoteControl();
    ~RemoteControl() override;

    // To be called before the main loop runs.
    void serve(Program);

    // Nothing is asked of the program from now on.
    void stop();

    bool handleMessage(const QDBusMessage&, const QDBusConnection&) override;
    QString introspect(const QString& path) const override;

private:
    QDBusMessage answer(const QDBusMessage& request);
    QDBusMessage answer(const QDBusMessage& request, std::optional<Command>);

    Program program;
};

} // namespace tallowbay
