#include "main/remote/CommandSender.h"

#include "main/remote/BusNames.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <optional>

namespace tallowbay {

namespace {

using Outcome = CommandReply::Outcome;

constexpr int patienceMilliseconds = 10'000;

QDBusMessage requestFor(const QString& method, const QString& interfaceName = busName::application)
{
    auto request =
        QDBusMessage::createMethodCall(busName::service, busName::path, interfaceName, method);
    request.setAutoStartService(false);
    return request;
}

QDBusMessage requestFor(Command command)
{
    auto request = requestFor(QStringLiteral("ActivateAction"));
    const auto name = nameOf(command);
    request << QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) << QVariantList()
            << QVariantMap();
    return request;
}

bool isNamed(const QDBusMessage& error, const char* name)
{
    return error.errorName() == QLatin1String("org.freedesktop.DBus.Error.") + QLatin1String(name);
}

CommandReply replyFor(std::optional<Command> command, const QDBusMessage& error)
{
    if (isNamed(error, "NameHasNoOwner") || isNamed(error, "ServiceUnknown"))
        return {Outcome::notRunning, {}};
    // A program that quits may be gone before its answer is on its way.
    if (isNamed(error, "NoReply") && command == Command::quit)
        return {};
    if (error.errorName() == busName::notAvailable)
        return {Outcome::failed, error.errorMessage().toStdString()};
    return {
        Outcome::failed, "Tallowbay does not answer (" + error.errorMessage().toStdString() + ")"};
}

CommandReply send(const QDBusMessage& request, std::optional<Command> command)
{
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return {Outcome::failed, "the session bus, by which Tallowbay is reached, does not answer"};
    const auto answer = bus.call(request, QDBus::Block, patienceMilliseconds);
    if (answer.type() == QDBusMessage::ErrorMessage)
        return replyFor(command, answer);
    return {Outcome::done, {}, answer.arguments().value(0).toString().toStdString()};
}

} // namespace

CommandReply sendCommand(Command command)
{
    return send(requestFor(command), command);
}

CommandReply askForStatus()
{
    return send(requestFor(QStringLiteral("Report"), busName::ownInterface), std::nullopt);
}

void activateRunningProgram()
{
    auto request = requestFor(QStringLiteral("Activate"));
    request << QVariantMap();
    QDBusConnection::sessionBus().call(request, QDBus::Block, patienceMilliseconds);
}

} // namespace tallowbay
