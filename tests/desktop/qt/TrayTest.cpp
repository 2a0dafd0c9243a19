#include "desktop/qt/QtDesktop.h"
#include "platform/headless/HeadlessWindows.h"
#include "platform/qt/Artwork.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/X11Connection.h"
#include "platform/qt/tray/PanelColor.h"
#include "platform/qt/tray/QtMenu.h"
#include "platform/qt/tray/QtStatusBar.h"
#include "platform/x11/windows/X11EmbeddingTray.h"

#include <QMenu>
#include <QPointer>
#include <QScreen>

#include <gmock/gmock.h>

namespace tallowbay::test {
namespace {

MenuItem row(const std::string& title, std::function<void()> action)
{
    MenuItem item;
    item.title = title;
    item.action = std::move(action);
    return item;
}

class TrayTest : public testing::Test {
protected:
    std::unique_ptr<ChildProcess> startTray()
    {
        return desktop.server().start({"trayer", "--edge", "top", "--height", "24"});
    }

    std::unique_ptr<StatusItem> makeItem()
    {
        return bar.makeItem({"MenubarIcon", 18, {}}, {row("Settings", [] {})});
    }

    // Icons in a tray are the only windows of ours.
    bool iconIsShown()
    {
        const auto found = desktop.server().search({"--class", "tallowbay"});
        return found.status == 0;
    }

    QRect iconPlace()
    {
        const std::string shell =
            desktop.server()
                .run(
                    {"sh", "-c",
                     "xwininfo -id $(xdotool search --onlyvisible --class tallowbay | tail -n 1)"})
                .output;
        const auto value = [&](const std::string& name) {
            return std::stoi(shell.substr(shell.find(name) + name.size()));
        };
        return {
            value("Absolute upper-left X:"), value("Absolute upper-left Y:"), value("Width:"),
            value("Height:")};
    }

    // From the darkest pixel of the icon's place to the brightest.
    int contrast(const QRect& place) const
    {
        const QImage picture = desktop.picture(place);
        int darkest = 255;
        int brightest = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const int lightness = picture.pixelColor(x, y).lightness();
                darkest = std::min(darkest, lightness);
                brightest = std::max(brightest, lightness);
            }
        }
        return brightest - darkest;
    }

    // Of a tray that says and shows what the test has it say and show.
    QColor foreground(const QRect& icon = {}) const
    {
        const auto color = qt::panelForeground({}, saidTray, icon);
        EXPECT_TRUE(color);
        return color.value_or(QColor(128, 128, 128));
    }

    QtDesktop desktop;
    x11::X11EmbeddingTray tray{*qt::x11Connection()};
    qt::QtStatusBar bar{tray};
    headless::HeadlessEmbeddingTray saidTray;
};

TEST_F(TrayTest, TakesTheColorThatTheTrayAsksFor)
{
    saidTray.symbolColor = Color{1, 0, 0.5};
    EXPECT_EQ(foreground().rgba(), qRgba(255, 0, 128, 255));
}

TEST_F(TrayTest, AsksNoEmbeddingTrayForTheColorOnTheMessageBus)
{
    saidTray.symbolColor = Color{1, 0, 0};
    EXPECT_FALSE(qt::panelForeground({0, QStringLiteral(":1.7")}, saidTray));
}

TEST_F(TrayTest, StandsOutFromAPanelThatSaysNothing)
{
    const QRect place(100, 100, 22, 22);
    desktop.server().run({"xsetroot", "-solid", "#202226"});
    EXPECT_GT(foreground(place).lightness(), 200);
    desktop.server().run({"xsetroot", "-solid", "#e8e8e8"});
    EXPECT_LT(foreground(place).lightness(), 80);
}

TEST_F(TrayTest, ShowsItsPictureOrElseItsInitials)
{
    const auto panel = startTray();
    for (const StatusButton& button : {StatusButton{"MenubarIcon", 18, {}}, {{}, 0, "TB"}}) {
        const auto item = bar.makeItem(button, {});
        ASSERT_TRUE(desktop.runUntil([this] { return iconIsShown(); }));
        const QRect place = iconPlace();
        EXPECT_TRUE(desktop.runUntil([&] { return contrast(place) > 100; }))
            << button.imageName << button.title << " stands out by " << contrast(place);
    }
}

// The icon turned white on a light panel once a dimmed screen had lain over both.
TEST_F(TrayTest, TakesNoColorFromWhatLiesOverThePanel)
{
    const auto panel = startTray();
    const auto item = makeItem();
    ASSERT_TRUE(desktop.runUntil([this] { return iconIsShown(); }));
    const QRect place = iconPlace();
    EXPECT_TRUE(desktop.runUntil([&] { return tray.showsIconAt(qt::desktopPixels(place)); }));

    QWidget cover(nullptr, Qt::X11BypassWindowManagerHint);
    cover.setGeometry(QGuiApplication::primaryScreen()->geometry());
    cover.show();
    EXPECT_TRUE(desktop.runUntil([&] { return !tray.showsIconAt(qt::desktopPixels(place)); }));
    cover.hide();
    EXPECT_TRUE(desktop.runUntil([&] { return tray.showsIconAt(qt::desktopPixels(place)); }));
}

// The icon was black on the black panel of a desktop with light windows, and white on the light
// panel of one with dark windows.
TEST_F(TrayTest, ConcludesNothingFromTheWindows)
{
    for (const QColor& windows : {QColor(240, 240, 240), QColor(40, 40, 40)}) {
        QApplication::setPalette(windows);
        EXPECT_FALSE(qt::panelForeground({}, saidTray));
        EXPECT_FALSE(qt::panelForeground({0, QStringLiteral(":1.7")}, saidTray));
    }
}

TEST_F(TrayTest, HasItsPictureInTheSizesThatPanelsUse)
{
    const qt::Artwork artwork;
    EXPECT_TRUE(artwork.has(QStringLiteral("MenubarIcon")));
    EXPECT_FALSE(artwork.has(QStringLiteral("Menubar")));
    EXPECT_FALSE(artwork.has(QString()));
    const QIcon icon = artwork.tinted(QStringLiteral("MenubarIcon"), Qt::red);
    for (int size : {16, 18, 22, 24, 32, 36, 44, 48, 64}) {
        const QImage picture = icon.pixmap(QSize(size, size), 1.0).toImage();
        EXPECT_EQ(picture.size(), QSize(size, size));
        EXPECT_EQ(picture.pixelColor(size / 2 - 2, size - size / 4), QColor(Qt::red)) << size;
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << size;
    }
}

TEST_F(TrayTest, ShowsTheMenusRowsInOrder)
{
    int quits = 0;
    MenuItem quit = row("Quit", [&] { ++quits; });
    quit.keyEquivalent = "q";
    quit.symbol = "xmark";
    const auto menu = qt::makeMenu(
        {row("Running", nullptr), MenuItem::makeSeparator(), row("Settings", [] {}), quit});

    const auto actions = menu->actions();
    ASSERT_EQ(actions.size(), 4);
    EXPECT_EQ(actions[0]->text(), QStringLiteral("Running"));
    EXPECT_FALSE(actions[0]->isEnabled());
    EXPECT_TRUE(actions[1]->isSeparator());
    EXPECT_TRUE(actions[2]->isEnabled());
    EXPECT_TRUE(actions[2]->icon().isNull());
    EXPECT_EQ(actions[3]->shortcut(), QKeySequence(QStringLiteral("Ctrl+Q")));
    const QColor cross = actions[3]->icon().pixmap(QSize(16, 16), 1.0).toImage().pixelColor(8, 8);
    EXPECT_EQ(cross.alpha(), 255);
    EXPECT_GT(cross.lightness(), 100) << "on a dark menu";
    EXPECT_LT(cross.lightness(), 155) << "on a light one";
    actions[3]->trigger();
    EXPECT_EQ(quits, 1);
}

TEST_F(TrayTest, LeavesAMenuToWhoeverIsStillInIt)
{
    std::unique_ptr<StatusItem> item;
    QPointer<QMenu> menu;
    bool isThere = false;
    item = bar.makeItem({"MenubarIcon", 18, {}}, {row("Renew", [&] {
                            item.reset();
                            isThere = !menu.isNull();
                        })});
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* found = qobject_cast<QMenu*>(widget))
            menu = found;
    ASSERT_TRUE(menu);
    menu->actions().front()->trigger();
    EXPECT_TRUE(isThere);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(menu.isNull());
}

} // namespace
} // namespace tallowbay::test
