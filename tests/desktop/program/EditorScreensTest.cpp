#include "desktop/program/EditorFixture.h"

namespace tallowbay::test {
namespace {

// Takes keyboard and pointer for itself alone, as a lock screen does, until it goes.
class LockScreen {
public:
    explicit LockScreen(const XServer& server)
        : client(server.display())
    {
    }

    bool takeKeyboard()
    {
        const auto cookie = xcb_grab_keyboard(
            client.connection(), false, client.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC);
        return succeeded(xcb_grab_keyboard_reply(client.connection(), cookie, nullptr));
    }
    bool takePointer()
    {
        const auto cookie = xcb_grab_pointer(
            client.connection(), false, client.root(),
            XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE, XCB_GRAB_MODE_ASYNC,
            XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
        return succeeded(xcb_grab_pointer_reply(client.connection(), cookie, nullptr));
    }

private:
    template <typename Reply> static bool succeeded(Reply* reply)
    {
        const std::unique_ptr<Reply, decltype(&std::free)> owned(reply, &std::free);
        return owned && owned->status == XCB_GRAB_STATUS_SUCCESS;
    }

    XClient client;
};

// What the editor does when the screen changes under it. Without a window manager nobody else
// places it, or brings it the keyboard.
class EditorScreensTest : public EditorFixture, public testing::WithParamInterface<bool> {
protected:
    EditorScreensTest()
    {
        if (GetParam())
            server.startWindowManager();
    }
};

TEST_P(EditorScreensTest, FollowsAScreenOfAnotherSize)
{
    openEditorWith(2);
    editor.drag(editor.canvas(-15, -11), editor.canvas(15, 19));
    ASSERT_TRUE(editor.waitForChange(editor.canvas(0, clearRow), pictureColor()));
    setMode(1100, 700);
    const EditorScreen smaller(server);
    EXPECT_TRUE(smaller.waitForHeader(EditorScreen::headers[1]));
    EXPECT_TRUE(smaller.waitForCheck(1, true));
    smaller.press("Left"); // the keyboard is still there
    EXPECT_TRUE(smaller.waitForHeader(EditorScreen::headers[0]));
    smaller.press("Right");
    ASSERT_TRUE(smaller.waitForHeader(EditorScreen::headers[1]));
    smaller.press("Escape");
    ASSERT_TRUE(smaller.waitUntilGone());
}

TEST_P(EditorScreensTest, StaysOnTheMainScreenWhenAnotherComesAndGoes)
{
    openEditorWith(1);
    xrandr({"--setmonitor", "left", "1000/300x800/200+0+0", "screen"});
    xrandr({"--setmonitor", "right", "280/80x800/200+1000+0", "none"});
    const auto width = [this] {
        const std::string id = server.search({"--name", "^Tallowbay$"}).output;
        const std::string told =
            server.run({"xdotool", "getwindowgeometry", "--shell", id.substr(0, id.find('\n'))})
                .output;
        return told.find("WIDTH=1000") != std::string::npos;
    };
    EXPECT_TRUE(waitUntil(width));
    xrandr({"--delmonitor", "right"});
    xrandr({"--delmonitor", "left"});
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    EXPECT_TRUE(editor.waitForPixel(editor.canvas(0, clearRow), pictureColor()));
    EXPECT_TRUE(editor.isShown());
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_P(EditorScreensTest, MovesWhenAnotherScreenBecomesTheMainOne)
{
    xrandr({"--setmonitor", "*left", "700/200x800/200+0+0", "screen"});
    xrandr({"--setmonitor", "right", "580/180x800/200+700+0", "none"});
    launch();
    takeScreenshots(1);
    openEditor();
    const auto covers = [this](const std::string& place) {
        const std::string id = server.search({"--name", "^Tallowbay$"}).output;
        return server.run({"xdotool", "getwindowgeometry", "--shell", id.substr(0, id.find('\n'))})
                   .output.find(place)
            != std::string::npos;
    };
    ASSERT_TRUE(waitUntil([&] { return covers("X=0\nY=0\nWIDTH=700\nHEIGHT=800"); }));
    xrandr({"--delmonitor", "left"});
    xrandr({"--delmonitor", "right"});
    xrandr({"--setmonitor", "left", "700/200x800/200+0+0", "screen"});
    // Of monitors without an output, the toolkit misses a change now and then.
    EXPECT_TRUE(waitUntil([&] {
        xrandr({"--setmonitor", "*right", "580/180x800/200+700+0", "none"});
        if (waitUntil(
                [&] { return covers("X=700\nY=0\nWIDTH=580\nHEIGHT=800"); },
                std::chrono::seconds(2)))
            return true;
        xrandr({"--delmonitor", "right"});
        return false;
    }));
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_P(EditorScreensTest, HasAGroundWhenComposingEndsUnderIt)
{
    XClient client(server.display());
    auto compositor = server.start({"picom", "--backend", "xrender"});
    ASSERT_TRUE(waitUntil([&] {
        const auto cookie =
            xcb_get_selection_owner(client.connection(), client.atom("_NET_WM_CM_S0"));
        const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> reply(
            xcb_get_selection_owner_reply(client.connection(), cookie, nullptr), &std::free);
        return reply && reply->owner != XCB_NONE;
    }));
    openEditorWith(1);
    compositor.reset();
    EXPECT_TRUE(editor.waitForPixel({3, 3}, 0x18191e)) << std::hex << editor.pixel({3, 3});
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_P(EditorScreensTest, AGestureThatLosesTheKeyboardEnds)
{
    const PasteWindow other(server, home);
    ASSERT_TRUE(waitUntil([this] { return !activeWindow().empty(); }));
    const std::string name = activeWindow();
    openEditorWith(1);
    ASSERT_TRUE(waitForActive("Tallowbay"));
    const Place start = editor.canvas(-60, clearRow - 15);
    server.run(
        {"xdotool", "mousemove", std::to_string(start.x), std::to_string(start.y), "mousedown", "1",
         "mousemove_relative", "60", "15", "mousemove_relative", "60", "15"});
    ASSERT_TRUE(editor.waitForChange(editor.canvas(0, clearRow), pictureColor()));
    server.search({"--name", name, "windowfocus"});
    EXPECT_TRUE(editor.waitForPixel(editor.canvas(0, clearRow), pictureColor()));
    server.run({"xdotool", "mouseup", "1"});
    editor.click(editor.canvas(200, clearRow)); // back, with nothing in hand
    ASSERT_TRUE(waitForActive("Tallowbay"));
    server.run({"xdotool", "mousemove_relative", "--", "-200", "40"});
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_P(EditorScreensTest, ALockScreenThatComesUpInADragLeavesNothingStuck)
{
    openEditorWith(1);
    const Place start = editor.canvas(-60, clearRow - 15);
    server.run(
        {"xdotool", "mousemove", std::to_string(start.x), std::to_string(start.y), "mousedown", "1",
         "mousemove_relative", "60", "15", "mousemove_relative", "60", "15"});
    ASSERT_TRUE(editor.waitForChange(editor.canvas(0, clearRow), pictureColor()));
    {
        LockScreen lock(server);
        EXPECT_TRUE(lock.takeKeyboard());
        server.run({"xdotool", "mouseup", "1"}); // only then is the pointer free
        EXPECT_TRUE(waitUntil([&] { return lock.takePointer(); }));
        editor.press("Escape");
        editor.drag(editor.canvas(100, clearRow - 15), editor.canvas(130, clearRow + 15));
        EXPECT_TRUE(editor.shows(editor.canvas(115, clearRow), pictureColor()));
        EXPECT_TRUE(editor.isShown());
    }
    EXPECT_FALSE(editor.shows(editor.canvas(0, clearRow), pictureColor()))
        << "what was drawn stays";
    editor.drag(editor.canvas(100, clearRow - 15), editor.canvas(130, clearRow + 15));
    EXPECT_TRUE(editor.waitForChange(editor.canvas(115, clearRow), pictureColor()));
    editor.press("ctrl+z");
    EXPECT_TRUE(editor.waitForPixel(editor.canvas(115, clearRow), pictureColor()));
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

TEST_P(EditorScreensTest, AClickBringsTheKeyboardBack)
{
    const PasteWindow other(server, home);
    ASSERT_TRUE(waitUntil([this] { return !activeWindow().empty(); }));
    const std::string name = activeWindow();
    openEditorWith(2);
    ASSERT_TRUE(waitForActive("Tallowbay"));
    server.search({"--name", name, "windowfocus"});
    ASSERT_TRUE(waitForActive(name));
    // The toolkit takes its time to believe that the keyboard is gone.
    EXPECT_TRUE(waitUntil([this] {
        editor.click(editor.header());
        return activeWindow() == "Tallowbay";
    }));
    editor.press("Left");
    EXPECT_TRUE(editor.waitForHeader(EditorScreen::headers[0]));
}

// The desktop shows through, dimmed by a fifth, each of its pixels in its place.
TEST_P(EditorScreensTest, TheDesktopStandsWhereItWas)
{
    constexpr xcb_rectangle_t red{6, 300, 9, 41};
    constexpr Rgb dimmed = 0xcc0000;
    paintDesktop(red, 0xff0000);
    for (const int scale : {1, 2}) {
        ASSERT_TRUE(editor.waitForPixel({red.x, red.y}, 0xff0000));
        launch({"QT_SCALE_FACTOR=" + std::to_string(scale)});
        ASSERT_EQ(command("open"), 0);
        const int right = red.x + red.width;
        const int bottom = red.y + red.height;
        EXPECT_TRUE(editor.waitForPixel({red.x, red.y}, dimmed)) << scale;
        EXPECT_TRUE(editor.waitForPixel({right - 1, bottom - 1}, dimmed)) << scale;
        for (const Place outside :
             {Place{red.x - 1, red.y}, {red.x, red.y - 1}, {right, red.y}, {red.x, bottom}})
            EXPECT_FALSE(editor.shows(outside, dimmed)) << scale;
        editor.press("Escape");
        ASSERT_TRUE(editor.waitUntilGone());
        ASSERT_EQ(program->quit(), 0);
    }
}

// Where there is room for two screens.
class EditorOnLargeScreenTest : public EditorFixture, public testing::WithParamInterface<bool> {
protected:
    EditorOnLargeScreenTest()
        : EditorFixture({1600, 1280, {}})
    {
        if (GetParam())
            server.startWindowManager();
    }
};

// As when a tablet is turned.
TEST_P(EditorOnLargeScreenTest, FollowsAScreenThatIsTurned)
{
    openEditorWith(1);
    for (const auto& [width, height] : {std::pair(800, 1280), std::pair(1280, 801)}) {
        setMode(width, height);
        const EditorScreen turned(server);
        EXPECT_TRUE(turned.waitForHeader(EditorScreen::headers[0])) << width;
        EXPECT_TRUE(turned.waitForCheck(0, true)) << width;
        const Place onPicture = turned.canvas(0, clearRow);
        EXPECT_TRUE(turned.waitForPixel(onPicture, pictureColor())) << width;
        turned.drag(onPicture + Place{-15, -15}, onPicture + Place{15, 15});
        EXPECT_TRUE(turned.waitForChange(onPicture, pictureColor())) << width;
        turned.press("ctrl+z");
        EXPECT_TRUE(turned.waitForPixel(onPicture, pictureColor())) << width;
    }
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

// Where a place of the editor lies, which is told in points, on a screen at that corner.
Place placeOn(Place corner, int scale, const QPoint& point)
{
    return corner + Place{point.x() * scale, point.y() * scale};
}

TEST_P(EditorOnLargeScreenTest, GoesFromAScreenToOneOfAnotherScale)
{
    const auto divide = [this](const std::string& left, const std::string& right) {
        xrandr({"--setmonitor", left, "700/200x1280/300+0+0", "screen"});
        xrandr({"--setmonitor", right, "900/250x1280/300+700+0", "none"});
    };
    divide("left", "*right");
    launch({"QT_SCREEN_SCALE_FACTORS=left=1;right=2"});
    takeScreenshots(1);
    openEditor();
    const auto standsOn = [this](Place corner, int scale, const QSize& points) {
        const auto layout = views::EditorLayout::of(points, {56, 256}, {132, 32});
        const Place header = placeOn(corner, scale, layout.canvasCard.topLeft() + QPoint(100, 28));
        const Place check = placeOn(corner, scale, layout.strip.topLeft() + QPoint(39, 30));
        const QRect canvas = layout.canvasCard.adjusted(0, 56, 0, 0);
        const Place picture = placeOn(corner, scale, canvas.center() + QPoint(0, clearRow));
        EXPECT_TRUE(editor.waitForPixel(header, EditorScreen::headers[0])) << scale;
        EXPECT_TRUE(editor.waitForPixel(check, 0x007aff)) << scale;
        EXPECT_TRUE(editor.waitForPixel(picture, pictureColor())) << scale;
        editor.drag(picture + Place{-15, -15}, picture + Place{15, 15});
        EXPECT_TRUE(editor.waitForChange(picture, pictureColor())) << scale;
        editor.press("ctrl+z");
        EXPECT_TRUE(editor.waitForPixel(picture, pictureColor())) << scale;
    };
    standsOn({700, 0}, 2, {450, 640});
    xrandr({"--delmonitor", "left"});
    xrandr({"--delmonitor", "right"});
    divide("*left", "right");
    standsOn({0, 0}, 1, {700, 1280});
    editor.press("Escape");
    EXPECT_TRUE(editor.waitUntilGone());
}

std::string managerName(const testing::TestParamInfo<bool>& info)
{
    return info.param ? "openbox" : "none";
}

INSTANTIATE_TEST_SUITE_P(WindowManager, EditorScreensTest, testing::Bool(), managerName);
INSTANTIATE_TEST_SUITE_P(WindowManager, EditorOnLargeScreenTest, testing::Bool(), managerName);

} // namespace
} // namespace tallowbay::test
