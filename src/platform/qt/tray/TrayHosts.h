#pragma once

#include "platform/EmbeddingTray.h"

#include <QDBusServiceWatcher>
#include <QString>
#include <QTimer>

#include <functional>

namespace tallowbay::qt {

// Which program shows tray icons, by either of the two ways there are. Equal as long as it is the
// same run of the same program.
struct TrayHost {
    NativeWindow embedder = 0; // the window of a tray that embeds windows
    QString notifierOwner; // the bus name of a status notifier watcher that has a host

    bool present() const { return embedder != 0 || !notifierOwner.isEmpty(); }
    bool operator==(const TrayHost&) const = default;
};

// Watches for a tray host to come, go or start anew.
//
// Qt is not asked: its first look decides for the whole run whether it uses the message bus for
// tray icons, and that look may come before the desktop's panel has started.
class TrayHosts {
public:
    // Called on the main queue after every change; the first answer comes that way, too.
    using Changed = std::function<void(const TrayHost&)>;
    TrayHosts(const EmbeddingTray&, Changed);

private:
    void watchNotifiers();
    void look();
    void askWatcherForItsHost(const QString& owner);
    void update(TrayHost);

    const EmbeddingTray& embeddingTray;
    Changed changed;
    TrayHost current;
    QString watcherOwner;
    QDBusServiceWatcher notifierWatchers;
    QTimer timer;
    QObject context; // last: what the bus still answers is for nobody once it is gone
};

} // namespace tallowbay::qt
