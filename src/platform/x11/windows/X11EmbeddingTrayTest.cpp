#include "platform/x11/windows/X11EmbeddingTray.h"

#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

namespace tallowbay::x11 {
namespace {

class X11EmbeddingTrayTest : public testing::Test {
protected:
    void startPanel() { panel.own("_NET_SYSTEM_TRAY_S0"); }

    // Shown on top of what is there.
    static void showWindow(test::XClient& client, const PixelRect& place)
    {
        const auto window = xcb_generate_id(client.connection());
        const std::uint32_t unmanaged = 1;
        xcb_create_window(
            client.connection(), XCB_COPY_FROM_PARENT, window, client.root(),
            static_cast<std::int16_t>(place.x), static_cast<std::int16_t>(place.y),
            static_cast<std::uint16_t>(place.width), static_cast<std::uint16_t>(place.height), 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
            &unmanaged);
        xcb_map_window(client.connection(), window);
        client.sync();
    }

    const test::XServer server;
    test::XClient toolkit{server.display()};
    test::XClient panel{server.display()};
    const X11EmbeddingTray tray{*toolkit.connection()};
    const PixelRect place{100, 50, 24, 24};
};

TEST_F(X11EmbeddingTrayTest, IsTheWindowThatOwnsTheTraysSelection)
{
    EXPECT_EQ(tray.window(), 0u);
    startPanel();
    EXPECT_EQ(tray.window(), panel.window());
}

TEST_F(X11EmbeddingTrayTest, TellsTheFirstOfTheTraysColors)
{
    const std::vector<std::uint32_t> colors{65535, 0, 32767, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    panel.setValues(panel.window(), "_NET_SYSTEM_TRAY_COLORS", "CARDINAL", colors);
    panel.sync();
    EXPECT_EQ(tray.foreground(), std::nullopt);
    startPanel();
    EXPECT_EQ(tray.foreground(), (Color{1, 0, 32767.0 / 65535}));
}

TEST_F(X11EmbeddingTrayTest, HasNoColorWhereTheTraySaysNothingOrTooLittle)
{
    startPanel();
    EXPECT_EQ(tray.foreground(), std::nullopt);
    panel.setValues(panel.window(), "_NET_SYSTEM_TRAY_COLORS", "CARDINAL", {65535, 0});
    panel.sync();
    EXPECT_EQ(tray.foreground(), std::nullopt);
}

TEST_F(X11EmbeddingTrayTest, ShowsAnIconUntilAnotherProgramsWindowLiesOverIt)
{
    EXPECT_FALSE(tray.showsIconAt(place));
    showWindow(toolkit, place);
    EXPECT_TRUE(tray.showsIconAt(place));
    showWindow(panel, {0, 0, 300, 300});
    EXPECT_FALSE(tray.showsIconAt(place));
}

TEST_F(X11EmbeddingTrayTest, TakesNoIconOfAnotherProgramForOurs)
{
    showWindow(panel, place);
    EXPECT_FALSE(tray.showsIconAt(place));
}

TEST_F(X11EmbeddingTrayTest, TakesNoLargeWindowOfOursForTheIcon)
{
    showWindow(toolkit, {0, 0, 300, 300});
    EXPECT_FALSE(tray.showsIconAt(place));
}

TEST_F(X11EmbeddingTrayTest, ShowsNoIconInAnEmptyPlace)
{
    showWindow(toolkit, place);
    EXPECT_FALSE(tray.showsIconAt({110, 60, 24, 0}));
}

} // namespace
} // namespace tallowbay::x11
