#include "platform/x11/windows/X11WindowSystem.h"

#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"
#include "platform/contract/WindowSystemContract.h"

#include <optional>

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

} // namespace
} // namespace tallowbay::x11

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, WindowSystemContract, x11::X11WindowSystemBackend);
} // namespace tallowbay::contract
