#include "platform/qt/tray/TrayHosts.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace tallowbay::qt {

namespace {

using namespace std::chrono_literals;

constexpr auto lookEvery = 2s;
const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");

// Calls back with the reply's only value, unless the call fails or the context is gone.
template <typename Value>
void askBus(
    const QDBusMessage& question, QObject* context, std::function<void(const Value&)> answer)
{
    auto* pending =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), context);
    QObject::connect(
        pending, &QDBusPendingCallWatcher::finished, context,
        [answer = std::move(answer)](QDBusPendingCallWatcher* call) {
            call->deleteLater();
            const QDBusPendingReply<Value> reply = *call;
            if (reply.isValid())
                answer(reply.value());
        });
}

} // namespace

TrayHosts::TrayHosts(const EmbeddingTray& embeddingTray, Changed changed)
    : embeddingTray(embeddingTray)
    , changed(std::move(changed))
{
    watchNotifiers();
    timer.callOnTimeout([this] { look(); });
    timer.start(lookEvery);
    QMetaObject::invokeMethod(
        &context, [this] { look(); }, Qt::QueuedConnection);
}

void TrayHosts::watchNotifiers()
{
    if (!QDBusConnection::sessionBus().isConnected())
        return;
    notifierWatchers.setConnection(QDBusConnection::sessionBus());
    notifierWatchers.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    notifierWatchers.addWatchedService(watcherService);
    QObject::connect(
        &notifierWatchers, &QDBusServiceWatcher::serviceOwnerChanged, &context,
        [this](const QString&, const QString&, const QString& owner) {
            watcherOwner = owner;
            look();
        });
    auto whoIsIt = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetNameOwner"));
    whoIsIt << watcherService;
    askBus<QString>(whoIsIt, &context, [this](const QString& owner) {
        watcherOwner = owner;
        look();
    });
}

void TrayHosts::look()
{
    TrayHost seen = current;
    seen.embedder = embeddingTray.window();
    if (seen.notifierOwner != watcherOwner)
        seen.notifierOwner.clear();
    update(seen);
    if (!watcherOwner.isEmpty() && current.notifierOwner.isEmpty())
        askWatcherForItsHost(watcherOwner);
}

// A watcher only keeps the list of icons; who shows them may come later.
void TrayHosts::askWatcherForItsHost(const QString& owner)
{
    auto hasHost = QDBusMessage::createMethodCall(
        watcherService, QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    hasHost << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    askBus<QDBusVariant>(hasHost, &context, [this, owner](const QDBusVariant& answer) {
        if (!answer.variant().toBool() || owner != watcherOwner)
            return;
        TrayHost seen = current;
        seen.notifierOwner = owner;
        update(seen);
    });
}

void TrayHosts::update(TrayHost seen)
{
    if (seen == current)
        return;
    current = std::move(seen);
    changed(current);
}

} // namespace tallowbay::qt
