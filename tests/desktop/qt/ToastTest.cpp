#include "desktop/qt/QtDesktop.h"
#include "desktop/support/SessionBus.h"
#include "desktop/support/XClient.h"
#include "platform/qt/X11Connection.h"
#include "platform/x11/windows/X11WindowSystem.h"
#include "ui/ToastContent.h"
#include "views/QtViews.h"

#include <QImage>
#include <QScreen>
#include <QWidget>

#include <gmock/gmock.h>

#include <cmath>

using testing::HasSubstr;

namespace tallowbay::test {
namespace {

const QRect frame(500, 376, 280, 48);
const ToastContent content{
    "3 Screenshot(s) Ready", {15, FontWeight::semibold}, {{500, 376}, {280, 48}}, 12,
    WindowLevel::statusBar,
};

int brightestOf(const QImage& picture)
{
    int brightest = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            brightest = std::max(brightest, picture.pixelColor(x, y).lightness());
    return brightest;
}

// The least rectangle with all the pixels of the text.
QRect inkOf(const QImage& picture)
{
    QRect ink;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y).lightness() > 150)
                ink |= QRect(x, y, 1, 1);
    return ink;
}

// Another program.
class OtherProgram {
public:
    explicit OtherProgram(const std::string& display)
        : client(display)
    {
    }

    void openBehind(const PixelRect& place, const QColor& color)
    {
        const auto window = xcb_generate_id(client.connection());
        const std::uint32_t background = color.rgb() & 0xffffff;
        xcb_create_window(
            client.connection(), XCB_COPY_FROM_PARENT, window, client.root(),
            static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y),
            static_cast<std::uint16_t>(place.width), static_cast<std::uint16_t>(place.height), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &background);
        const std::uint32_t below = XCB_STACK_MODE_BELOW;
        xcb_configure_window(client.connection(), window, XCB_CONFIG_WINDOW_STACK_MODE, &below);
        xcb_map_window(client.connection(), window);
        client.sync();
    }

private:
    XClient client;
};

class ToastTest : public testing::Test {
protected:
    std::unique_ptr<WindowPort> show(const ToastContent& shown = content)
    {
        auto toast = views.makeToast(shown);
        toast->setAlpha(0);
        toast->orderFront();
        toast->setAlpha(1);
        return toast;
    }

    QtDesktop desktop;
    x11::X11WindowSystem windows{*qt::x11Connection()};
    views::QtViews views{windows};
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

// The corners went on showing what had been there when the toast came.
TEST_F(ToastTest, ShowsAtItsRoundCornersAWindowThatOpensBehindIt)
{
    const auto toast = show();
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) != desktop.background; }));
    const QColor red(220, 40, 40);
    OtherProgram other(desktop.server().display());

    other.openBehind({300, 200, 700, 450}, red);

    const auto isRed = [&](int x, int y) {
        return desktop.runUntil([&, x, y] { return desktop.pixel(x, y) == red; });
    };
    for (const int x : {500, 779})
        for (const int y : {376, 423})
            EXPECT_TRUE(isRed(x, y)) << x << ", " << y;
    // Where a circle of 12 points passes
    EXPECT_EQ(desktop.pixel(502, 379), red);
    EXPECT_NE(desktop.pixel(504, 380), red);
    EXPECT_EQ(desktop.pixel(777, 420), red);
    EXPECT_NE(desktop.pixel(775, 419), red);
    for (const int x : {500, 640, 779})
        EXPECT_LT(desktop.pixel(x, 390).lightness(), 80) << x;
}

TEST_F(ToastTest, IsInvisibleWhenItComesAtAlphaZero)
{
    const auto toast = views.makeToast(content);
    toast->setAlpha(0);
    toast->orderFront();
    desktop.runFor(std::chrono::milliseconds(150));
    EXPECT_EQ(desktop.pixel(640, 380), desktop.background);
}

TEST_F(ToastTest, HasItsShapeWhenItComesAsItIs)
{
    const auto toast = views.makeToast(content);
    toast->setAlpha(1);
    toast->orderFront();
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380) != desktop.background; }));
    EXPECT_EQ(desktop.pixel(500, 376), desktop.background);
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

TEST_F(ToastTest, FadesItsTextWithoutACompositingManager)
{
    const auto toast = show();
    ASSERT_TRUE(desktop.runUntil([&] { return brightestOf(desktop.picture(frame)) > 240; }));

    toast->setAlpha(0.5);

    EXPECT_TRUE(desktop.runUntil([&] { return brightestOf(desktop.picture(frame)) < 170; }));
    EXPECT_GT(brightestOf(desktop.picture(frame)), 110);
    EXPECT_LT(desktop.pixel(640, 380).lightness(), 80);
}

TEST_F(ToastTest, ShowsEveryStepOfItsFadeFromThreeInAHundredOn)
{
    const auto toast = show();
    toast->setAlpha(0.5);
    ASSERT_TRUE(desktop.runUntil([&] {
        const int brightest = brightestOf(desktop.picture(frame));
        return brightest > 110 && brightest < 170;
    }));
    const int before = brightestOf(desktop.picture(frame));

    toast->setAlpha(0.535);

    EXPECT_TRUE(desktop.runUntil([&] { return brightestOf(desktop.picture(frame)) > before + 3; }));
}

TEST_F(ToastTest, CutsALongMessageOffAndSaysSo)
{
    ToastContent wide = content;
    wide.message = std::string(200, 'W');
    wide.frame = {{400, 376}, {480, 48}};
    const auto toast = show(wide);
    const QRect line(400, 376, 480, 48);
    ASSERT_TRUE(desktop.runUntil([&] { return !inkOf(desktop.picture(line)).isEmpty(); }));

    const QImage shown = desktop.picture(line);
    const QRect ink = inkOf(shown);
    EXPECT_GE(ink.left(), 16);
    EXPECT_LT(ink.left(), 40);
    EXPECT_LE(ink.right(), 480 - 16);
    EXPECT_GT(ink.right(), 480 - 40);
    EXPECT_LT(ink.height(), 15);
    // The last to be seen are the three dots, which stand on the line.
    const QRect end = inkOf(shown.copy(ink.right() - 6, 0, 7, 48));
    EXPECT_GT(end.top(), ink.center().y());
    EXPECT_EQ(end.bottom(), ink.bottom());
}

TEST_F(ToastTest, LetsClicksAndKeysThrough)
{
    const auto window =
        desktop.server().start({"stdbuf", "-oL", "xev", "-geometry", "600x400+340+200"});
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.focusWindow("Event Tester"); }))
        << desktop.focusedWindowName();
    const auto toast = show();
    ASSERT_TRUE(desktop.runUntil([&] { return desktop.pixel(640, 380).lightness() < 80; }))
        << "the toast does not lie over the other window";

    EXPECT_EQ(desktop.focusedWindowName(), "Event Tester");
    desktop.server().run({"xdotool", "mousemove", "640", "400", "click", "1", "key", "a"});

    EXPECT_TRUE(desktop.runUntil(
        [&] { return window->output().find("ButtonPress") != std::string::npos; }));
    EXPECT_TRUE(
        desktop.runUntil([&] { return window->output().find("KeyPress") != std::string::npos; }));
}

// So many pixels a point: Qt reads it when it starts.
struct PixelsPerPoint {
    explicit PixelsPerPoint(double scale) { qputenv("QT_SCALE_FACTOR", QByteArray::number(scale)); }
    ~PixelsPerPoint() { qunsetenv("QT_SCALE_FACTOR"); }
};

class ScaledToastTest : public testing::WithParamInterface<double>,
                        private PixelsPerPoint,
                        public ToastTest {
protected:
    ScaledToastTest()
        : PixelsPerPoint(GetParam())
    {
        desktop.server().run({"xsetroot", "-mod", "7", "5", "-fg", "#e02020", "-bg", "#20a0e0"});
        wallpaper = look();
    }

    QImage look() const { return desktop.picture(pixels).convertToFormat(QImage::Format_RGB32); }

    // Whether the middle of the pixel lies on the rounded rectangle, if it is not at its very edge.
    std::optional<bool> isOnToast(int x, int y) const
    {
        const double radius = content.cornerRadius * scale;
        const double right = std::max(std::abs(x + 0.5 - pixels.width() / 2.0) + radius, 0.0);
        const double below = std::max(std::abs(y + 0.5 - pixels.height() / 2.0) + radius, 0.0);
        const double distance = std::hypot(
            std::max(right - pixels.width() / 2.0, 0.0),
            std::max(below - pixels.height() / 2.0, 0.0));
        return std::abs(distance - radius) < 1 ? std::nullopt : std::optional(distance < radius);
    }

    // Grey, as material, rim and text are; the wallpaper is nowhere.
    static bool isOfToast(const QColor& color)
    {
        return std::abs(color.red() - color.green()) < 8
            && std::abs(color.red() - color.blue()) < 8;
    }

    const double scale = GetParam();
    const QRect pixels{
        int(200 * scale), int(100 * scale), int(frame.width() * scale), int(48 * scale)};
    QImage wallpaper;
};

// Parts of the wallpaper stood in the toast, where they did not belong.
TEST_P(ScaledToastTest, IsWholeInItsShapeAndLeavesTheWallpaperAroundIt)
{
    ToastContent placed = content;
    const int bottom = QGuiApplication::primaryScreen()->geometry().height();
    placed.frame.origin = {200, bottom - 100 - content.frame.size.height};
    const auto toast = show(placed);
    ASSERT_TRUE(desktop.runUntil([&] { return brightestOf(look()) > 240; }));

    const QImage shown = look();
    ASSERT_EQ(shown.size(), pixels.size());
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const auto onToast = isOnToast(x, y);
            if (!onToast)
                continue;
            const bool right = *onToast ? isOfToast(shown.pixelColor(x, y))
                                        : shown.pixel(x, y) == wallpaper.pixel(x, y);
            ASSERT_TRUE(right) << x << ", " << y << " of " << pixels.width() << " x "
                               << pixels.height();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scale, ScaledToastTest, testing::Values(1, 1.5, 2), [](const auto& info) {
    return "Times" + std::to_string(int(info.param * 100)) + "Percent";
});

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
