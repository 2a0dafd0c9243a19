#include "platform/contract/StatusBarContract.h"

#include "desktop/qt/QtDesktop.h"
#include "platform/qt/X11Connection.h"
#include "platform/qt/tray/QtStatusBar.h"
#include "platform/x11/windows/X11EmbeddingTray.h"

#include <QMenu>

#include <algorithm>

namespace tallowbay::test {

namespace {

// A tray that embeds windows. Icons in it are the only windows of ours.
class QtStatusBarBackend {
public:
    StatusBar& bar() { return statusBar; }
    void startBar()
    {
        tray = desktop.server().start({"trayer", "--edge", "top", "--height", "24"});
    }
    void endBar() { tray.reset(); }
    bool showsIcons(std::size_t count)
    {
        if (count == 0)
            desktop.runFor(std::chrono::milliseconds(100));
        return desktop.runUntil([&] { return iconCount() == count; });
    }

    std::vector<contract::SeenRow> menu()
    {
        std::vector<contract::SeenRow> rows;
        for (const QAction* action : actions())
            rows.push_back({seenTitle(*action), action->isEnabled() && !action->isSeparator()});
        return rows;
    }
    void choose(const std::string& title)
    {
        for (QAction* action : actions())
            if (seenTitle(*action) == title)
                return action->trigger();
        FAIL() << "no row " << title;
    }

    void middleClick()
    {
        const std::string icon = icons().substr(0, icons().find('\n'));
        Presses presses;
        desktop.server().run({"xdotool", "mousemove", "--window", icon, "8", "8", "click", "2"});
        desktop.runUntil([&] { return presses.count > 0; });
        desktop.runFor(std::chrono::milliseconds(50)); // for what the press sets off
    }

private:
    // Of mouse buttons, in windows of this program.
    struct Presses : QObject {
        Presses() { QCoreApplication::instance()->installEventFilter(this); }
        bool eventFilter(QObject* receiver, QEvent* event) override
        {
            count += receiver->isWidgetType() && event->type() == QEvent::MouseButtonPress ? 1 : 0;
            return false;
        }
        int count = 0;
    };

    static QList<QAction*> actions()
    {
        for (const QWidget* widget : QApplication::topLevelWidgets())
            if (const auto* menu = qobject_cast<const QMenu*>(widget))
                return menu->actions();
        return {};
    }

    // The mark of a mnemonic is not seen, and two of them are one that is.
    static std::string seenTitle(const QAction& action)
    {
        QString seen;
        const QString text = action.text();
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (text[i] == QLatin1Char('&'))
                ++i;
            if (i < text.size())
                seen += text[i];
        }
        return seen.toStdString();
    }

    // Their windows, a line for each.
    std::string icons() { return desktop.server().search({"--class", "tallowbay"}).output; }
    std::size_t iconCount() { return static_cast<std::size_t>(std::ranges::count(icons(), '\n')); }

    QtDesktop desktop;
    x11::X11EmbeddingTray embeddingTray{*qt::x11Connection()};
    std::unique_ptr<ChildProcess> tray;
    qt::QtStatusBar statusBar{embeddingTray};
};

} // namespace

} // namespace tallowbay::test

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, StatusBarContract, test::QtStatusBarBackend);
} // namespace tallowbay::contract
