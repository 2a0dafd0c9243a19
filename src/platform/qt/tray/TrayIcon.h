#pragma once

#include "platform/StatusBar.h"
#include "platform/qt/tray/TrayHosts.h"

#include <QIcon>
#include <QMenu>
#include <QSystemTrayIcon>

#include <memory>

namespace tallowbay::qt {

// One icon in whatever tray there is; none while there is no tray.
class TrayIcon {
public:
    TrayIcon(StatusButton, QMenu&, const EmbeddingTray&, const WindowSystem&);

private:
    void moveTo(const TrayHost&);
    void recolor();
    QIcon picture(const QColor&) const;
    QPoint menuPlace() const;

    StatusButton button;
    QMenu& menu;
    const EmbeddingTray& embeddingTray;
    const WindowSystem& windows;
    TrayHost host;
    QColor color;
    std::unique_ptr<QSystemTrayIcon> icon;
    QTimer recolorTimer;
    TrayHosts hosts;
};

} // namespace tallowbay::qt
