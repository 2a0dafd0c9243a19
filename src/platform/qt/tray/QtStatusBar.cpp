#include "platform/qt/tray/QtStatusBar.h"

#include "platform/qt/tray/QtMenu.h"
#include "platform/qt/tray/TrayIcon.h"

namespace tallowbay::qt {

namespace {

class QtStatusItem final : public StatusItem {
public:
    QtStatusItem(const StatusButton& button, const Menu& rows, const EmbeddingTray& embeddingTray)
        : menu(makeMenu(rows))
        , icon(button, *menu, embeddingTray)
    {
    }

    // Whoever chose a row of the menu may still be in it.
    ~QtStatusItem() override { menu.release()->deleteLater(); }

private:
    std::unique_ptr<QMenu> menu;
    TrayIcon icon;
};

} // namespace

std::unique_ptr<StatusItem> QtStatusBar::makeItem(const StatusButton& button, Menu menu)
{
    return std::make_unique<QtStatusItem>(button, menu, embeddingTray);
}

} // namespace tallowbay::qt
