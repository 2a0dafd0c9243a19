#include "platform/x11/windows/X11WindowSystem.h"

#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"

#include <gmock/gmock.h>

#include <xcb/shape.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace tallowbay::x11 {
namespace {

using namespace std::string_literals;

// Both sides as raw as they can be: one connection is the toolkit's, with a window that it shows.
class X11WindowSystemTest : public testing::Test {
protected:
    std::vector<std::uint32_t> blurRegion()
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

    void startCompositor() { other.own("_NET_WM_CM_S0"); }
    void offerBlur()
    {
        other.setValues(other.root(), "_KDE_NET_WM_BLUR_BEHIND_REGION", "CARDINAL", {0});
        other.sync();
    }

    const test::XServer server;
    test::XClient toolkit{server.display()};
    test::XClient other{server.display()};
    X11WindowSystem windows{*toolkit.connection()};
};

TEST_F(X11WindowSystemTest, KnowsWhetherAProgramComposesTheWindowsAtThatMoment)
{
    EXPECT_FALSE(windows.composesWindows());
    startCompositor();
    EXPECT_TRUE(windows.composesWindows());
}

TEST_F(X11WindowSystemTest, BlursBehindWhereTheCompositorOffersIt)
{
    startCompositor();
    EXPECT_FALSE(windows.blursBehind());
    offerBlur();
    EXPECT_TRUE(windows.blursBehind());
}

TEST_F(X11WindowSystemTest, BlursNothingThatACompositorLeftBehind)
{
    offerBlur();
    EXPECT_FALSE(windows.blursBehind());
}

TEST_F(X11WindowSystemTest, AsksForBlurByTheRegionsNumbersAndTakesTheWishBack)
{
    windows.blurBehind(toolkit.window(), {{1, 2, 30, 40}, {5, 6, 70, 80}});
    EXPECT_THAT(blurRegion(), ElementsAre(1, 2, 30, 40, 5, 6, 70, 80));
    windows.blurBehind(toolkit.window(), {{9, 9, 9, 9}});
    EXPECT_THAT(blurRegion(), ElementsAre(9, 9, 9, 9));
    windows.blurBehind(toolkit.window(), {});
    EXPECT_THAT(blurRegion(), IsEmpty());
}

TEST_F(X11WindowSystemTest, CutsAWindowToItsLastShape)
{
    windows.cutToShape(toolkit.window(), {{0, 0, 1, 1}});
    windows.cutToShape(toolkit.window(), {{2, 0, 6, 1}, {0, 1, 10, 5}});
    EXPECT_THAT(shape(), ElementsAre(PixelRect{2, 0, 6, 1}, PixelRect{0, 1, 10, 5}));
    windows.cutToShape(toolkit.window(), {});
    EXPECT_THAT(shape(), IsEmpty());
}

TEST_F(X11WindowSystemTest, TellsTheThemeThatTheDesktopPublishes)
{
    EXPECT_EQ(windows.windowTheme(), "");
    const auto settings = "\0\0\0\0\0\0\0\0\1\0\0\0"s // little-endian, one setting
                          "\1\0\015\0Net/ThemeName\0\0\0\0\0\0\0"s
                          "\4\0\0\0Dusk"s;
    other.setProperty(other.window(), "_XSETTINGS_SETTINGS", "_XSETTINGS_SETTINGS", settings);
    other.own("_XSETTINGS_S0");
    EXPECT_EQ(windows.windowTheme(), "Dusk");
}

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
