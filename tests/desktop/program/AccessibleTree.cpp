#include "desktop/program/AccessibleTree.h"

#include "desktop/support/Wait.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include <stdexcept>

namespace tallowbay::test {

namespace {

const QString accessible = QStringLiteral("org.a11y.atspi.Accessible");
const char* const launcherPath = "/usr/libexec/at-spi-bus-launcher";

struct NamedState {
    int bit;
    const char* name;
};

// By their numbers in the protocol.
constexpr NamedState namedStates[] = {{4, "checked"},     {11, "focusable"}, {12, "focused"},
                                      {22, "selectable"}, {23, "selected"},  {25, "showing"}};

QDBusMessage call(
    const QDBusConnection& bus, const QString& service, const QString& path,
    const QString& interface, const QString& method, const QVariantList& arguments = {})
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return bus.call(message, QDBus::Block, 5000);
}

} // namespace

std::vector<const AccessibleNode*> AccessibleNode::all() const
{
    std::vector<const AccessibleNode*> nodes{this};
    for (const AccessibleNode& child : children)
        for (const AccessibleNode* below : child.all())
            nodes.push_back(below);
    return nodes;
}

const AccessibleNode* AccessibleNode::find(
    const std::string& wantedRole, const std::string& wantedName) const
{
    for (const AccessibleNode* node : all())
        if (node->role == wantedRole && node->name == wantedName)
            return node;
    return nullptr;
}

AssistiveBus::AssistiveBus(const Environment& environment)
    : launcher(std::make_unique<ChildProcess>(
        std::vector<std::string>{launcherPath, "--launch-immediately"}, environment))
{
    const QDBusConnection session = QDBusConnection::connectToBus(
        QString::fromStdString(environment.at("DBUS_SESSION_BUS_ADDRESS").value()),
        QStringLiteral("assistiveSession"));
    QDBusMessage reply;
    const bool answered = waitUntil([&] {
        reply = call(
            session, QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
            QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress"));
        return reply.type() == QDBusMessage::ReplyMessage;
    });
    QDBusConnection::disconnectFromBus(QStringLiteral("assistiveSession"));
    if (!answered)
        throw std::runtime_error("no bus of assistive programs: " + launcher->errors());
    bus = std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(
        reply.arguments().value(0).toString(), QStringLiteral("assistive")));
}

AssistiveBus::~AssistiveBus()
{
    bus.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("assistive"));
}

std::vector<AssistiveBus::Place> AssistiveBus::childrenOf(const Place& place) const
{
    const QDBusMessage reply = call(
        *bus, QString::fromStdString(place.service), QString::fromStdString(place.path), accessible,
        QStringLiteral("GetChildren"));
    std::vector<Place> children;
    if (reply.type() != QDBusMessage::ReplyMessage)
        return children;
    const auto list = reply.arguments().value(0).value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString service;
        QDBusObjectPath path;
        list.beginStructure();
        list >> service >> path;
        list.endStructure();
        children.push_back({service.toStdString(), path.path().toStdString()});
    }
    return children;
}

std::string AssistiveBus::property(const Place& place, const char* name) const
{
    const QDBusMessage reply = call(
        *bus, QString::fromStdString(place.service), QString::fromStdString(place.path),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
        {accessible, QString::fromLatin1(name)});
    return reply.arguments().value(0).value<QDBusVariant>().variant().toString().toStdString();
}

AccessibleNode AssistiveBus::read(const Place& place, int depth) const
{
    const QString service = QString::fromStdString(place.service);
    const QString path = QString::fromStdString(place.path);
    AccessibleNode node;
    node.name = property(place, "Name");
    node.description = property(place, "Description");
    node.role = call(*bus, service, path, accessible, QStringLiteral("GetRoleName"))
                    .arguments()
                    .value(0)
                    .toString()
                    .toStdString();
    const QDBusMessage reply = call(*bus, service, path, accessible, QStringLiteral("GetState"));
    const auto words = qdbus_cast<QList<uint>>(reply.arguments().value(0));
    for (const auto& [bit, name] : namedStates)
        if (words.value(bit / 32) >> bit % 32 & 1)
            node.states.insert(name);
    if (depth > 0)
        for (const Place& child : childrenOf(place))
            node.children.push_back(read(child, depth - 1));
    return node;
}

std::optional<AccessibleNode> AssistiveBus::program(const std::string& name) const
{
    constexpr int deepest = 8;
    const Place registry{"org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
    for (const Place& place : childrenOf(registry))
        if (property(place, "Name") == name)
            return read(place, deepest);
    return std::nullopt;
}

} // namespace tallowbay::test
