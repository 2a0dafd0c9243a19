#pragma once

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/FileTransfer.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <memory>

namespace tallowbay::qt {

// The document portal's file transfer. It is not started for this: where a program runs in a
// sandbox that asks it, it runs already.
class PortalFileTransfer final : public FileTransfer {
public:
    // The dispatch outlives this object. Needs the QCoreApplication.
    explicit PortalFileTransfer(Dispatch&, const QDBusConnection& = QDBusConnection::sessionBus());
    ~PortalFileTransfer() override;

    bool available() const override { return portalAnswers; }
    void begin(const Files&, Reply) override;
    void end(const std::string& key) override;

private:
    void lookForPortal();
    void meet(const QString& newOwner);

    Dispatch& dispatch;
    const QDBusConnection bus;
    QDBusServiceWatcher watcher;
    QString owner; // of the portal's name; empty if it does not run
    bool portalAnswers = false;
    std::unique_ptr<SerialQueue> queue; // where the portal is waited for
    QObject context; // what the bus still answers is for nobody once it is gone
    Lifetime lifetime;
};

} // namespace tallowbay::qt
