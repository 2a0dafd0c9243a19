// A tray of the old kind as a panel makes one, and icons in it as a toolkit does.

#include "platform/contract/EmbeddingTrayContract.h"

#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"
#include "platform/x11/windows/X11EmbeddingTray.h"

#include <cmath>
#include <memory>
#include <vector>

namespace tallowbay::test {
namespace {

class X11EmbeddingTrayBackend {
public:
    const EmbeddingTray& tray() { return embeddingTray; }

    // The new panel is there before the old one goes, lest it gets the same window.
    void startTray(std::optional<Color> symbols)
    {
        auto started = std::make_unique<XClient>(server.display());
        if (symbols)
            started->setValues(
                started->window(), "_NET_SYSTEM_TRAY_COLORS", "CARDINAL",
                {component(symbols->red), component(symbols->green), component(symbols->blue)});
        started->own(selection);
        panel = std::move(started);
    }
    void endTray()
    {
        xcb_set_selection_owner(
            panel->connection(), XCB_NONE, panel->atom(selection), XCB_CURRENT_TIME);
        panel->sync();
    }

    void showIcon(const PixelRect& place) { showWindow(toolkit, place); }
    void coverIcon(const PixelRect& place) { showWindow(other, place); }

private:
    static constexpr auto selection = "_NET_SYSTEM_TRAY_S0";

    static std::uint32_t component(double part)
    {
        return std::uint32_t(std::lround(part * 0xffff));
    }

    // On top of what is there.
    static void showWindow(XClient& client, const PixelRect& place)
    {
        const auto window = xcb_generate_id(client.connection());
        const std::uint32_t unmanaged = 1;
        xcb_create_window(
            client.connection(), XCB_COPY_FROM_PARENT, window, client.root(), std::int16_t(place.x),
            std::int16_t(place.y), std::uint16_t(place.width), std::uint16_t(place.height), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
            &unmanaged);
        xcb_map_window(client.connection(), window);
        client.sync();
    }

    const XServer server;
    XClient toolkit{server.display()};
    XClient other{server.display()};
    std::unique_ptr<XClient> panel;
    const x11::X11EmbeddingTray embeddingTray{*toolkit.connection()};
};

} // namespace
} // namespace tallowbay::test

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, EmbeddingTrayContract, test::X11EmbeddingTrayBackend);
} // namespace tallowbay::contract
