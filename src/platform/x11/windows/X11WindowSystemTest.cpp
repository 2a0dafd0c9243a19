#include "platform/x11/windows/X11WindowSystem.h"

#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"
#include "platform/contract/WindowSystemContract.h"

#include <xcb/shape.h>

namespace tallowbay::x11 {
namespace {

using namespace std::string_literals;

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
    void publishTheme(const std::string& name)
    {
        const auto length = std::string{static_cast<char>(name.size()), 0, 0, 0};
        const auto settings = "\0\0\0\0\0\0\0\0\1\0\0\0"s // little-endian, one setting
                              "\1\0\015\0Net/ThemeName\0\0\0\0\0\0\0"s
            + length + name + std::string((4 - name.size() % 4) % 4, '\0');
        other.setProperty(other.window(), "_XSETTINGS_SETTINGS", "_XSETTINGS_SETTINGS", settings);
        other.own("_XSETTINGS_S0");
    }

    PixelRegion blurredRegion()
    {
        const auto numbers = blurNumbers();
        PixelRegion region;
        for (std::size_t i = 0; i + 4 <= numbers.size(); i += 4)
            region.push_back(
                {int(numbers[i]), int(numbers[i + 1]), int(numbers[i + 2]), int(numbers[i + 3])});
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

private:
    std::vector<std::uint32_t> blurNumbers()
    {
        toolkit.sync();
        const auto cookie = xcb_get_property(
            toolkit.connection(), false, toolkit.window(),
            toolkit.atom("_KDE_NET_WM_BLUR_BEHIND_REGION"), XCB_GET_PROPERTY_TYPE_ANY, 0, 100);
        const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
            xcb_get_property_reply(toolkit.connection(), cookie, nullptr), &std::free);
        const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return {values, values + reply->value_len};
    }

    const test::XServer server;
    test::XClient toolkit{server.display()};
    test::XClient other{server.display()};
    X11WindowSystem system{*toolkit.connection()};
};

TEST(X11WindowSystemWithoutShapesTest, LeavesTheWindowARectangleAndTheConnectionAlive)
{
    const test::XServer server({640, 480, {"-extension", "SHAPE"}});
    test::XClient toolkit(server.display());
    X11WindowSystem windows(*toolkit.connection());

    windows.cutToShape(toolkit.window(), {{0, 0, 1, 1}});

    toolkit.sync();
    EXPECT_EQ(xcb_connection_has_error(toolkit.connection()), 0);
}

} // namespace
} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, WindowSystemContract, x11::X11WindowSystemBackend);
} // namespace tallowbay::contract
