// A tray on the message bus, as Plasma and others have it: prints a line for each icon that
// registers.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <iostream>

namespace {

class Watcher : public QDBusVirtualObject {
public:
    QString introspect(const QString&) const override
    {
        return QStringLiteral(R"(
  <interface name="org.kde.StatusNotifierWatcher">
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <method name="RegisterStatusNotifierItem">
      <arg name="service" type="s" direction="in"/>
    </method>
  </interface>
)");
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (message.member() == QLatin1String("RegisterStatusNotifierItem")) {
            std::cout << "icon " << message.arguments().value(0).toString().toStdString()
                      << std::endl;
            return bus.send(message.createReply());
        }
        if (message.member() != QLatin1String("Get"))
            return false;
        const bool asksForHost =
            message.arguments().value(1) == QLatin1String("IsStatusNotifierHostRegistered");
        const QVariant answer = asksForHost ? QVariant(true) : QVariant(0);
        return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(answer))));
    }
};

} // namespace

int main(int argumentCount, char** arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    auto bus = QDBusConnection::sessionBus();
    Watcher watcher;
    const bool registered =
        bus.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), &watcher)
        && bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    return registered ? QCoreApplication::exec() : 1;
}
