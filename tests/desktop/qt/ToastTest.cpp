#include "desktop/qt/QtDesktop.h"
#include "desktop/support/SessionBus.h"
#include "platform/qt/X11Connection.h"
#include "platform/x11/windows/X11WindowSystem.h"
#include "views/QtToastViews.h"

#include <QImage>
#include <QWidget>

#include <gmock/gmock.h>

using namespace std::chrono_literals;
using testing::HasSubstr;

namespace tallowbay::test {
namespace {

const ToastContent content{
    "3 Screenshot(s) Ready", {15, FontWeight::semibold}, {{500, 376}, {280, 48}}, 12,
    WindowLevel::statusBar,
};

class ToastTest : public testing::Test {
protected:
    std::unique_ptr<WindowPort> show()
    {
        auto toast = views.make(content);
        toast->setAlpha(0);
        toast->orderFront();
        toast->setAlpha(1);
        return toast;
    }

    QtDesktop desktop;
    x11::X11WindowSystem windows{*qt::x11Connection()};
    views::QtToastViews views{windows};
};

TEST_F(ToastTest, StandsInTheMiddleOfTheScreen)
{
    const auto toast = show();

    EXPECT_TRUE(
        desktop.runUntil([&] { return desktop.pixel(500 + 30, 376 + 24) != desktop.background; }));
    EXPECT_EQ(desktop.pixel(499, 400), desktop.background);
    EXPECT_NE(desktop.pixel(501, 400), desktop.background);
    EXPECT_NE(desktop.pixel(778, 400), desktop.background);
    EXPECT_EQ(desktop.pixel(780, 400), desktop.background);
    EXPECT_EQ(desktop.pixel(640, 375), desktop.background);
    EXPECT_EQ(desktop.pixel(640, 424), desktop.background);
}

TEST_F(ToastTest, HasRoundCornersWithoutACompositingManager)
{
    const auto toast = show();

    EXPECT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) != desktop.background; }));
    EXPECT_EQ(desktop.pixel(500, 376), desktop.background);
    EXPECT_EQ(desktop.pixel(779, 423), desktop.background);
}

TEST_F(ToastTest, IsInvisibleAtAlphaZero)
{
    const auto toast = show();
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) != desktop.background; }));

    toast->setAlpha(0);

    EXPECT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) == desktop.background; }));
}

TEST_F(ToastTest, LeavesTheScreenWhenItIsDestroyed)
{
    auto toast = show();
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) != desktop.background; }));

    toast.reset();

    EXPECT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) == desktop.background; }));
}

TEST_F(ToastTest, IsNotInThePictureThatANewerToastTakes)
{
    auto older = show();
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) != desktop.background; }));
    const auto newer = show();
    older.reset();

    newer->setAlpha(0);

    EXPECT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) == desktop.background; }));
}

TEST_F(ToastTest, LetsClicksAndKeysThrough)
{
    const auto window =
        desktop.server().start({"stdbuf", "-oL", "xev", "-geometry", "600x400+340+200"});
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.focusWindow("Event Tester"); }))
        << desktop.focusedWindowName();
    const auto toast = show();
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.toastIsMapped(); }));

    EXPECT_EQ(desktop.focusedWindowName(), "Event Tester");
    desktop.server().run({"xdotool", "mousemove", "640", "400", "click", "1", "key", "a"});

    EXPECT_TRUE(desktop.runUntil(
        [&] { return window->output().find("ButtonPress") != std::string::npos; }));
    EXPECT_TRUE(
        desktop.runUntil([&] { return window->output().find("KeyPress") != std::string::npos; }));
}

TEST_F(ToastTest, CallsTheCompletionWhenTheDurationIsOver)
{
    const auto toast = show();
    const auto start = std::chrono::steady_clock::now();
    bool done = false;
    toast->animateAlpha(0, 60ms, [&] { done = true; });

    EXPECT_TRUE(desktop.runUntil([&] { return done; }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 60ms);
    EXPECT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) == desktop.background; }));
}

TEST_F(ToastTest, MayBeDestroyedByItsOwnCompletion)
{
    auto toast = show();
    toast->animateAlpha(0, 10ms, [&] { toast.reset(); });

    EXPECT_TRUE(desktop.runUntil([&] { return !toast; }));
}

TEST_F(ToastTest, CallsNoCompletionOnceItIsDestroyed)
{
    auto toast = show();
    bool done = false;
    toast->animateAlpha(0, 10ms, [&] { done = true; });
    toast.reset();

    desktop.runFor(50ms);
    EXPECT_FALSE(done);
}

// With a window manager that composes the windows, over a red window of this program.
class CompositedToastTest : public ToastTest {
protected:
    CompositedToastTest()
    {
        EXPECT_TRUE(desktop.runUntil([this] { return windows.composesWindows(); }));
        wall.setPalette(red);
        wall.setGeometry(300, 200, 700, 450);
        wall.show();
        EXPECT_TRUE(desktop.runUntil([this] { return desktop.pixel(640, 400) == red; }));
    }

    bool becomes(int x, int y, const std::function<bool(const QColor&)>& condition)
    {
        return desktop.runUntil([&] { return condition(desktop.pixel(x, y)); });
    }

    const QColor red{220, 40, 40};
    const SessionBus bus; // which the window manager keeps its settings behind
    std::unique_ptr<ChildProcess> manager = desktop.server().start(
        {"env", "DBUS_SESSION_BUS_ADDRESS=" + bus.address(), "xfwm4", "--compositor=on",
         "--replace"});
    QWidget wall;
};

TEST_F(CompositedToastTest, LetsTheScreenShineThrough)
{
    const auto toast = show();

    EXPECT_TRUE(becomes(520, 380, [](const QColor& color) {
        return color.red() < 100 && color.red() > color.green() + 5;
    }));
    EXPECT_EQ(desktop.pixel(500, 376), red);
    EXPECT_EQ(desktop.pixel(779, 423), red);
}

TEST_F(CompositedToastTest, FadesWithItsAlpha)
{
    const auto toast = show();
    ASSERT_TRUE(becomes(520, 380, [](const QColor& color) { return color.red() < 100; }));

    toast->setAlpha(0.5);
    EXPECT_TRUE(becomes(
        520, 380, [](const QColor& color) { return color.red() > 110 && color.red() < 200; }));
    toast->setAlpha(0);
    EXPECT_TRUE(becomes(520, 380, [this](const QColor& color) { return color == red; }));
}

} // namespace
} // namespace tallowbay::test
