#include "platform/qt/portal/PortalFileTransfer.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDeadlineTimer>

#include <algorithm>

#include <fcntl.h>

namespace tallowbay::qt {

namespace {

using namespace std::chrono_literals;
using Files = FileTransfer::Files;
using Descriptors = QList<QDBusUnixFileDescriptor>;

constexpr auto patience = 1s;
constexpr std::size_t mostInAMessage = 16; // the bus takes no more descriptors

const QString service = QStringLiteral("org.freedesktop.portal.Documents");
const QString interface = QStringLiteral("org.freedesktop.portal.FileTransfer");

QDBusMessage callOf(const QString& ofInterface, const QString& method)
{
    auto call = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/portal/documents"), ofInterface, method);
    call.setAutoStartService(false);
    return call;
}

// Empty if one of the files cannot be had.
Descriptors opened(Files::const_iterator first, Files::const_iterator last)
{
    Descriptors descriptors;
    for (; first != last; ++first) {
        QDBusUnixFileDescriptor descriptor;
        descriptor.giveFileDescriptor(::open(first->c_str(), O_PATH | O_CLOEXEC));
        if (!descriptor.isValid())
            return {};
        descriptors.append(descriptor);
    }
    return descriptors;
}

// One key and the calls that it takes, on the transfer's own thread.
class Making {
public:
    Making(const QDBusConnection& bus, QDeadlineTimer deadline)
        : bus(bus)
        , deadline(deadline)
    {
    }

    // Empty where the portal fails or time runs out.
    std::optional<std::string> keyTo(const Files& files) const
    {
        if (deadline.hasExpired())
            return std::nullopt; // those before had to be waited for
        auto start = callOf(interface, QStringLiteral("StartTransfer"));
        start << QVariantMap{
            {QStringLiteral("writable"), false}, {QStringLiteral("autostop"), false}};
        const QDBusMessage reply = call(start);
        const QString key = reply.arguments().value(0).toString();
        if (key.isEmpty())
            return std::nullopt;
        if (add(key, files))
            return key.toStdString();
        bus.send(stopOf(key));
        return std::nullopt;
    }

    static QDBusMessage stopOf(const QString& key)
    {
        auto stop = callOf(interface, QStringLiteral("StopTransfer"));
        stop << key;
        return stop;
    }

private:
    bool add(const QString& key, const Files& files) const
    {
        for (auto first = files.begin(); first != files.end();) {
            const auto count = std::min<std::ptrdiff_t>(mostInAMessage, files.end() - first);
            const Descriptors descriptors = opened(first, first + count);
            auto some = callOf(interface, QStringLiteral("AddFiles"));
            some << key << QVariant::fromValue(descriptors) << QVariantMap();
            if (descriptors.isEmpty() || call(some).type() != QDBusMessage::ReplyMessage)
                return false;
            first += count;
        }
        return true;
    }

    QDBusMessage call(const QDBusMessage& message) const
    {
        const int left = std::max(1, static_cast<int>(deadline.remainingTime()));
        return bus.call(message, QDBus::Block, left);
    }

    const QDBusConnection bus;
    const QDeadlineTimer deadline;
};

} // namespace

PortalFileTransfer::PortalFileTransfer(Dispatch& dispatch, const QDBusConnection& bus)
    : dispatch(dispatch)
    , bus(bus)
    , queue(dispatch.makeSerialQueue("com.quarnel.tallowbay.transfer"))
{
    qDBusRegisterMetaType<Descriptors>();
    if (bus.isConnected())
        lookForPortal();
}

PortalFileTransfer::~PortalFileTransfer() = default;

void PortalFileTransfer::lookForPortal()
{
    watcher.setConnection(bus);
    watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    watcher.addWatchedService(service);
    QObject::connect(
        &watcher, &QDBusServiceWatcher::serviceOwnerChanged, &context,
        [this](const QString&, const QString&, const QString& newOwner) { meet(newOwner); });
    auto question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"));
    question << service;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), &context);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &context, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QString> reply = *answer;
        if (reply.isValid() && owner.isEmpty())
            meet(reply.value());
    });
}

// A portal of old does not know of transfers.
void PortalFileTransfer::meet(const QString& newOwner)
{
    owner = newOwner;
    portalAnswers = false;
    if (owner.isEmpty())
        return;
    auto question =
        callOf(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << interface << QStringLiteral("version");
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(question), &context);
    QObject::connect(
        answer, &QDBusPendingCallWatcher::finished, &context, [this, answer, newOwner] {
            answer->deleteLater();
            const QDBusPendingReply<QDBusVariant> reply = *answer;
            if (owner == newOwner)
                portalAnswers = reply.isValid();
        });
}

void PortalFileTransfer::begin(const Files& files, Reply reply)
{
    queue->async([this, bus = bus, files, deadline = QDeadlineTimer(patience),
                  reply = lifetime.guard(std::move(reply))] {
        const auto key = Making(bus, deadline).keyTo(files);
        dispatch.mainAsync([reply, key]() mutable { reply(key); });
    });
}

void PortalFileTransfer::end(const std::string& key)
{
    bus.send(Making::stopOf(QString::fromStdString(key)));
}

} // namespace tallowbay::qt
