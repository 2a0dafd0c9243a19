#include "desktop/program/EditorScreen.h"

#include "desktop/support/Wait.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace tallowbay::test {

namespace {

const QSize railSize(56, 256);
const QSize swatchCardSize(132, 32);
constexpr Rgb checkedBlue = 0x007aff;

bool isNear(Rgb a, Rgb b)
{
    for (int shift = 0; shift < 24; shift += 8)
        if (std::abs(int(a >> shift & 0xff) - int(b >> shift & 0xff)) > 3)
            return false;
    return true;
}

template <typename T> std::unique_ptr<T, decltype(&std::free)> owned(T* reply)
{
    return {reply, &std::free};
}

bool isEditor(XClient& eyes, xcb_window_t window)
{
    xcb_connection_t* const server = eyes.connection();
    const auto look = owned(xcb_get_window_attributes_reply(
        server, xcb_get_window_attributes(server, window), nullptr));
    const auto title = owned(xcb_get_property_reply(
        server, xcb_get_property(server, false, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 0, 8),
        nullptr));
    if (!look || !title || look->map_state != XCB_MAP_STATE_VIEWABLE)
        return false;
    const auto length = std::size_t(xcb_get_property_value_length(title.get()));
    const auto* text = static_cast<const char*>(xcb_get_property_value(title.get()));
    return std::string(text, length) == "Tallowbay";
}

// Itself or somewhere in it, where window managers put it.
bool holdsEditor(XClient& eyes, xcb_window_t window)
{
    if (isEditor(eyes, window))
        return true;
    const auto tree = owned(xcb_query_tree_reply(
        eyes.connection(), xcb_query_tree(eyes.connection(), window), nullptr));
    if (!tree)
        return false;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    return std::any_of(children, children + tree->children_len, [&](xcb_window_t child) {
        return holdsEditor(eyes, child);
    });
}

QSize screenSize(XClient& eyes)
{
    const auto& screen = *xcb_setup_roots_iterator(xcb_get_setup(eyes.connection())).data;
    return {screen.width_in_pixels, screen.height_in_pixels};
}

} // namespace

EditorScreen::EditorScreen(const XServer& server, int scale)
    : server(server)
    , eyes(server.display())
    , scale(scale)
{
}

// What is seen

Rgb EditorScreen::pixel(Place place) const
{
    const auto cookie = xcb_get_image(
        eyes.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, eyes.root(), std::int16_t(place.x),
        std::int16_t(place.y), 1, 1, ~0u);
    const auto reply = owned(xcb_get_image_reply(eyes.connection(), cookie, nullptr));
    const std::uint8_t* bytes = xcb_get_image_data(reply.get());
    return Rgb(bytes[2]) << 16 | Rgb(bytes[1]) << 8 | bytes[0];
}

bool EditorScreen::waitForPixel(Place place, Rgb color) const
{
    return waitUntil([&] { return shows(place, color); });
}

bool EditorScreen::waitForChange(Place place, Rgb from) const
{
    return waitUntil([&] { return !shows(place, from); });
}

bool EditorScreen::waitForHeader(Rgb color) const
{
    return waitForPixel(header(), color);
}

bool EditorScreen::shows(Place place, Rgb color) const
{
    return isNear(pixel(place), color);
}

// Windows come and go during the search.
bool EditorScreen::isShown() const
{
    return holdsEditor(eyes, eyes.root());
}

bool EditorScreen::waitUntilGone() const
{
    return waitUntil([this] { return !isShown(); });
}

bool EditorScreen::showsToast() const
{
    constexpr Rgb brightest = 0x60;
    const Place middle = at(QRect(QPoint(), screenSize(eyes) / scale).center());
    const Rgb besideText = pixel(middle + at({-104, 0}));
    return (besideText >> 16) < brightest && (besideText >> 8 & 0xff) < brightest
        && (besideText & 0xff) < brightest;
}

// What is done

void EditorScreen::press(const std::string& keys) const
{
    server.run({"xdotool", "key", keys});
}

void EditorScreen::type(const std::string& text) const
{
    server.run({"xdotool", "type", text});
}

void EditorScreen::mouse(const std::vector<std::string>& words) const
{
    std::vector<std::string> command{"xdotool"};
    command.insert(command.end(), words.begin(), words.end());
    server.run(command);
}

void EditorScreen::click(Place place, int button) const
{
    mouse(
        {"mousemove", std::to_string(place.x), std::to_string(place.y), "click",
         std::to_string(button)});
}

void EditorScreen::drag(Place from, Place to) const
{
    const Place middle{(from.x + to.x) / 2, (from.y + to.y) / 2};
    mouse(
        {"mousemove", std::to_string(from.x), std::to_string(from.y), "mousedown", "1", "mousemove",
         std::to_string(middle.x), std::to_string(middle.y), "mousemove", std::to_string(to.x),
         std::to_string(to.y), "mouseup", "1"});
}

// Where it is

views::EditorLayout EditorScreen::layout() const
{
    return views::EditorLayout::of(screenSize(eyes) / scale, railSize, swatchCardSize);
}

Place EditorScreen::at(const QPoint& point) const
{
    return {point.x() * scale, point.y() * scale};
}

Place EditorScreen::header() const
{
    return at(layout().canvasCard.topLeft() + QPoint(100, 28));
}

Place EditorScreen::canvas(int x, int y) const
{
    return at(layout().canvasCard.adjusted(0, 56, 0, 0).center() + QPoint(x, y));
}

Place EditorScreen::tool(int tag) const
{
    return at(layout().toolRail.topLeft() + QPoint(28, 28 + tag * 40));
}

Place EditorScreen::swatch(int tag) const
{
    return at(layout().swatchCard.topLeft() + QPoint(16 + tag * 25, 16));
}

Place EditorScreen::swatchCard() const
{
    return at(layout().swatchCard.topLeft() + QPoint(66, 4));
}

Place EditorScreen::cell(int place, int dividers) const
{
    return at(layout().strip.topLeft() + QPoint(24 + place * 224 + dividers * 34 + 100, 16 + 100));
}

Place EditorScreen::checkbox(int place, int dividers) const
{
    return cell(place, dividers) + at({-100 + 10 + 11, -100 + 18});
}

// Beside the tick.
bool EditorScreen::showsChecked(int place, int dividers) const
{
    return shows(checkbox(place, dividers) + at({-6, -4}), checkedBlue);
}

bool EditorScreen::waitForCheck(int place, bool checked, int dividers) const
{
    return waitUntil([&] { return showsChecked(place, dividers) == checked; });
}

} // namespace tallowbay::test
