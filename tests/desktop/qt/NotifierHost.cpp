// A tray on the message bus, as Plasma and others have it: prints a line for each icon that
// registers, and one that tells by which name it goes, and how many pixels of its picture of 22
// stand out from a black panel and from a white one.

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDBusVirtualObject>

#include <cstdlib>
#include <iostream>

namespace {

// Alpha, red, green and blue of each pixel.
int pixelsThatStandOut(const QByteArray& pixels, int ground)
{
    int count = 0;
    for (qsizetype at = 0; at + 3 < pixels.size(); at += 4) {
        const int alpha = static_cast<unsigned char>(pixels[at]);
        const int green = static_cast<unsigned char>(pixels[at + 2]);
        count += std::abs(alpha * (green - ground) / 255) > 100 ? 1 : 0;
    }
    return count;
}

QByteArray pictureOf22(const QVariant& property)
{
    const auto argument = property.value<QDBusArgument>();
    QByteArray found;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray pixels;
        argument.beginStructure();
        argument >> width >> height >> pixels;
        argument.endStructure();
        if (width == 22)
            found = pixels;
    }
    argument.endArray();
    return found;
}

void tellLook(const QVariantMap& item)
{
    const QByteArray picture = pictureOf22(item[QStringLiteral("IconPixmap")]);
    std::cout << "name \"" << item[QStringLiteral("IconName")].toString().toStdString()
              << "\", on black " << pixelsThatStandOut(picture, 0) << ", on white "
              << pixelsThatStandOut(picture, 255) << std::endl;
}

void askForLook(const QString& owner, const QDBusConnection& bus)
{
    auto question = QDBusMessage::createMethodCall(
        owner, QStringLiteral("/StatusNotifierItem"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("GetAll"));
    question << QStringLiteral("org.kde.StatusNotifierItem");
    auto* pending = new QDBusPendingCallWatcher(bus.asyncCall(question), qApp);
    QObject::connect(
        pending, &QDBusPendingCallWatcher::finished, [](QDBusPendingCallWatcher* call) {
            call->deleteLater();
            const QDBusPendingReply<QVariantMap> reply = *call;
            if (reply.isValid())
                tellLook(reply.value());
        });
}

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
            askForLook(message.service(), bus);
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
