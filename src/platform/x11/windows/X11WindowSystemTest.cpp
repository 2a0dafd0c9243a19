#include "platform/x11/windows/X11WindowSystem.h"

#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"
#include "platform/contract/WindowSystemContract.h"

#include <optional>

#include <xcb/shape.h>

namespace tallowbay::x11 {
namespace {

// Both sides as raw as they can be: one connection is the toolkit's, with a window that it shows.
class X11WindowSystemBackend {
public:
    WindowSystem& windows() { return system; }
    NativeWindow window() { return toolkit.window(); }

    void startComposing() { other.own("_NET_WM_CM_S0"); }
    void offerBlur()
    {
        other.setValues(other.root(), "_KDE_NET_WM_BLUR_BEHIND_REGION", "CARDINAL", {0});
        other.sync();
    }
    void setClass(const std::string& name)
    {
        other.setProperty(
            xcb_window_t(window()), "WM_CLASS", "STRING", "instance" + std::string(1, '\0') + name);
        other.sync();
    }

    // As a compositor reads it.
    PixelRegion blurredRegion()
    {
        const auto numbers = blurNumbers();
        if (!numbers)
            return {};
        if (numbers->empty())
            return {wholeWindow};
        PixelRegion region;
        for (auto next = numbers->begin(); numbers->end() - next >= 4; next += 4)
            region.push_back({int(next[0]), int(next[1]), int(next[2]), int(next[3])});
        return region;
    }
    PixelRegion shape()
    {
        const auto cookie =
            xcb_shape_get_rectangles(toolkit.connection(), toolkit.window(), XCB_SHAPE_SK_BOUNDING);
        const std::unique_ptr<xcb_shape_get_rectangles_reply_t, decltype(&std::free)> reply(
            xcb_shape_get_rectangles_reply(toolkit.connection(), cookie, nullptr), &std::free);
        PixelRegion result;
        const auto* rectangles = xcb_shape_get_rectangles_rectangles(reply.get());
        for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i)
            result.push_back(
                {rectangles[i].x, rectangles[i].y, rectangles[i].width, rectangles[i].height});
        return result;
    }

    bool isOffTaskbar()
    {
        toolkit.sync();
        const auto states = toolkit.look("_NET_WM_STATE").values();
        return states
            == std::vector<std::uint32_t>{
                other.atom("_NET_WM_STATE_SKIP_TASKBAR"), other.atom("_NET_WM_STATE_SKIP_PAGER")};
    }
    void show()
    {
        xcb_map_window(toolkit.connection(), toolkit.window());
        toolkit.sync();
    }
    bool hasKeyboard()
    {
        toolkit.sync();
        const auto cookie = xcb_get_input_focus(other.connection());
        const std::unique_ptr<xcb_get_input_focus_reply_t, decltype(&std::free)> reply(
            xcb_get_input_focus_reply(other.connection(), cookie, nullptr), &std::free);
        return reply->focus == toolkit.window();
    }

private:
    // Empty if there is no such property.
    std::optional<std::vector<std::uint32_t>> blurNumbers()
    {
        toolkit.sync();
        const auto cookie = xcb_get_property(
            toolkit.connection(), false, toolkit.window(),
            toolkit.atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_GET_PROPERTY_TYPE_ANY, 0, 100);
        const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
            xcb_get_property_reply(toolkit.connection(), cookie, nullptr), &std::free);
        if (reply->type == XCB_ATOM_NONE)
            return std::nullopt;
        const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return std::vector<std::uint32_t>(values, values + reply->value_len);
    }

    static constexpr PixelRect wholeWindow{0, 0, 65535, 65535};

    const test::XServer server;
    test::XClient toolkit{server.display()};
    test::XClient other{server.display()};
    X11WindowSystem system{*toolkit.connection()};
};

// A window of one colour, as soon as it is seen.
void showWindow(test::XClient& client, const xcb_rectangle_t& place, std::uint32_t color)
{
    const xcb_window_t window = xcb_generate_id(client.connection());
    const std::uint32_t values[] = {color, true};
    xcb_create_window(
        client.connection(), XCB_COPY_FROM_PARENT, window, client.root(), place.x, place.y,
        place.width, place.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(client.connection(), window);
    client.sync();
}

TEST(X11PictureTest, IsOfThePartThatIsAskedFor)
{
    const test::XServer server({2400, 700, {}}); // more than comes at once
    test::XClient toolkit(server.display());
    showWindow(toolkit, {0, 0, 2400, 700}, 0x123456);
    showWindow(toolkit, {2000, 600, 50, 40}, 0xfedcba);
    const auto picture = X11WindowSystem(*toolkit.connection()).picture({100, 50, 2300, 650});
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->size(), (PixelSize{2300, 650}));
    for (int y = 0; y < 650; ++y)
        for (int x = 0; x < 2300; ++x) {
            const bool within = x >= 1900 && x < 1950 && y >= 550 && y < 590;
            ASSERT_EQ(picture->pixel(x, y), within ? 0xfffedcba : 0xff123456) << x << "," << y;
        }
}

// The server tells a client its size only once, when it comes.
TEST(X11PictureTest, IsThereForAScreenThatHasGrown)
{
    const test::XServer server;
    const auto xrandr = [&server](std::vector<std::string> command) {
        command.insert(command.begin(), "xrandr");
        ASSERT_EQ(server.run(command).status, 0);
    };
    const std::string sizes[] = {"0", "640", "0", "0", "640", "400", "0", "0", "400"};
    std::vector<std::string> mode{"--newmode", "small"};
    mode.insert(mode.end(), std::begin(sizes), std::end(sizes));
    xrandr(mode);
    xrandr({"--addmode", "screen", "small"});
    xrandr({"--output", "screen", "--mode", "small"});
    test::XClient toolkit(server.display());
    const X11WindowSystem system(*toolkit.connection());
    EXPECT_FALSE(system.picture({0, 0, 1280, 800}));
    xrandr({"--output", "screen", "--mode", "1280x800"});
    EXPECT_TRUE(system.picture({0, 0, 1280, 800}));
}

TEST(X11PictureTest, IsNotThereOutsideOfTheScreenAndHarmsNothing)
{
    const test::XServer server;
    test::XClient toolkit(server.display());
    const X11WindowSystem system(*toolkit.connection());
    EXPECT_FALSE(system.picture({0, 0, 1281, 800}));
    EXPECT_FALSE(system.picture({-1, 0, 10, 10}));
    EXPECT_FALSE(system.picture({0, 0, 0, 10}));
    EXPECT_TRUE(system.picture({0, 0, 1280, 800}));
}

TEST(X11PictureTest, IsNotThereWherePixelsAreOtherWords)
{
    const test::XServer server({320, 200, {"-screen", "0", "320x200x16"}});
    test::XClient toolkit(server.display());
    EXPECT_FALSE(X11WindowSystem(*toolkit.connection()).picture({0, 0, 320, 200}));
}

TEST(X11PictureTest, IsNotThereWithoutSharedMemory)
{
    const test::XServer server({1280, 800, {"-extension", "MIT-SHM"}});
    test::XClient toolkit(server.display());
    const X11WindowSystem system(*toolkit.connection());
    EXPECT_FALSE(system.picture({0, 0, 1280, 800}));
    EXPECT_FALSE(system.composesWindows()) << "the connection is well";
}

} // namespace
} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, WindowSystemContract, x11::X11WindowSystemBackend);
} // namespace tallowbay::contract
