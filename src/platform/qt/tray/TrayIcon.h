#pragma once

#include "platform/StatusBar.h"
#include "platform/qt/tray/TrayHosts.h"

#include <QColor>
#include <QMenu>
#include <QSystemTrayIcon>

#include <memory>
#include <optional>

namespace tallowbay::qt {

// One icon in whatever tray there is; none while there is no tray.
class TrayIcon {
public:
    TrayIcon(StatusButton, QMenu&, const EmbeddingTray&);

private:
    void moveTo(const TrayHost&);
    void recolor();
    QPoint menuPlace() const;

    StatusButton button;
    QMenu& menu;
    const EmbeddingTray& embeddingTray;
    TrayHost host;
    std::optional<QColor> color; // empty: whatever the panel's is, the picture must show
    std::unique_ptr<QSystemTrayIcon> icon;
    QTimer recolorTimer;
    TrayHosts hosts;
};

} // namespace tallowbay::qt
