#include "main/remote/RemoteControl.h"

#include "main/remote/BusNames.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace tallowbay {

RemoteControl::RemoteControl()
{
    QDBusConnection::sessionBus().registerVirtualObject(busName::path, this);
}

RemoteControl::~RemoteControl()
{
    stop();
}

void RemoteControl::stop()
{
    QDBusConnection::sessionBus().unregisterObject(busName::path);
}

void RemoteControl::serve(Program newProgram)
{
    program = std::move(newProgram);
}

bool RemoteControl::handleMessage(const QDBusMessage& request, const QDBusConnection& bus)
{
    if (!request.interface().isEmpty() && request.interface() != busName::application
        && request.interface() != busName::ownInterface)
        return false;
    const QDBusMessage reply = answer(request);
    if (request.isReplyRequired())
        bus.send(reply);
    return true;
}

QDBusMessage RemoteControl::answer(const QDBusMessage& request)
{
    const QString method = request.member() + QLatin1Char(' ') + request.signature();
    if (method == QStringLiteral("ActivateAction sava{sv}"))
        return answer(request, commandNamed(request.arguments().first().toString().toStdString()));
    if (method == QStringLiteral("Open asa{sv}"))
        return answer(request, Command::open);
    if (method == QStringLiteral("Activate a{sv}")) {
        program.activate();
        return request.createReply();
    }
    if (method == QStringLiteral("Report "))
        return request.createReply(QString::fromStdString(program.status()));
    return request.createErrorReply(
        QDBusError::UnknownMethod, QStringLiteral("there is no method ") + method);
}

QDBusMessage RemoteControl::answer(const QDBusMessage& request, std::optional<Command> command)
{
    if (!command)
        return request.createErrorReply(
            QDBusError::InvalidArgs, QStringLiteral("there is no such action"));
    const std::string problem = problemOf(*command, program.perform(*command));
    if (!problem.empty())
        return request.createErrorReply(busName::notAvailable, QString::fromStdString(problem));
    return request.createReply();
}

QString RemoteControl::introspect(const QString& path) const
{
    if (path != busName::path)
        return {};
    return QStringLiteral(R"(
  <interface name="org.freedesktop.Application">
    <method name="Activate">
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="Open">
      <arg type="as" name="uris" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg type="s" name="action_name" direction="in"/>
      <arg type="av" name="parameter" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
  <interface name="com.quarnel.tallowbay.Status">
    <method name="Report">
      <arg type="s" name="lines" direction="out"/>
    </method>
  </interface>
)");
}

} // namespace tallowbay
