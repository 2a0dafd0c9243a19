#include "platform/x11/windows/X11WindowSystem.h"

#include "platform/x11/windows/SharedMemoryPicture.h"

#include <xcb/shape.h>

namespace tallowbay::x11 {

namespace {

const std::string blurBehindProperty = "_KDE_NET_WM_BLUR_BEHIND_REGION";

// A request of an extension that is not there would end the connection.
bool serverHasShapes(xcb_connection_t& server)
{
    const auto* extension = xcb_get_extension_data(&server, &xcb_shape_id);
    return extension && extension->present;
}

xcb_rectangle_t serverRectangle(const PixelRect& rect)
{
    return {
        static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
        static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height)};
}

} // namespace

X11WindowSystem::X11WindowSystem(xcb_connection_t& server)
    : server(&server)
    , queries(server)
    , hasShapes(serverHasShapes(server))
{
}

bool X11WindowSystem::composesWindows() const
{
    return queries.selectionOwner(withScreenNumber("_NET_WM_CM_S")) != XCB_NONE;
}

// Who blurs says so by a property of that name on the root window.
bool X11WindowSystem::blursBehind() const
{
    return composesWindows() && queries.has(queries.root(), blurBehindProperty);
}

void X11WindowSystem::blurBehind(NativeWindow window, const PixelRegion& region)
{
    const auto target = static_cast<xcb_window_t>(window);
    if (region.empty()) // the property without values would mean the whole window
        return queries.remove(target, blurBehindProperty);
    std::vector<std::uint32_t> values;
    for (const PixelRect& rect : region)
        for (int value : {rect.x, rect.y, rect.width, rect.height})
            values.push_back(static_cast<std::uint32_t>(value));
    queries.set(target, blurBehindProperty, values);
}

void X11WindowSystem::cutToShape(NativeWindow window, const PixelRegion& region)
{
    if (!hasShapes)
        return;
    std::vector<xcb_rectangle_t> rectangles;
    for (const PixelRect& rect : region)
        rectangles.push_back(serverRectangle(rect));
    xcb_shape_rectangles(
        server, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED,
        static_cast<xcb_window_t>(window), 0, 0, static_cast<std::uint32_t>(rectangles.size()),
        rectangles.data());
}

// A manager reads the states as the window is shown, and clears them when it goes.
void X11WindowSystem::keepOffTaskbar(NativeWindow window)
{
    queries.addAtoms(
        static_cast<xcb_window_t>(window), "_NET_WM_STATE",
        {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"});
}

// As a pager asks, for the user: a program's own wish is weighed by when the program last got a
// key, and the hotkey came to us another way.
void X11WindowSystem::activate(NativeWindow window)
{
    constexpr std::uint32_t asPager = 2;
    const auto target = static_cast<xcb_window_t>(window);
    if (queries.has(queries.root(), "_NET_SUPPORTING_WM_CHECK"))
        queries.tellManager(target, "_NET_ACTIVE_WINDOW", asPager, XCB_CURRENT_TIME);
    else
        xcb_set_input_focus(server, XCB_INPUT_FOCUS_PARENT, target, XCB_CURRENT_TIME);
    xcb_flush(server);
}

// The instance, a zero, the class, a zero.
std::string X11WindowSystem::windowClass(NativeWindow window) const
{
    const std::string names = queries.bytes(xcb_window_t(window), "WM_CLASS");
    const auto begin = names.find('\0');
    return begin == names.npos ? "" : std::string(names.c_str() + begin + 1);
}

NativeWindow X11WindowSystem::activeWindow() const
{
    if (!queries.has(queries.root(), "_NET_SUPPORTING_WM_CHECK"))
        return queries.focusedWindow();
    const auto active = queries.values(queries.root(), "_NET_ACTIVE_WINDOW");
    return active.empty() ? 0 : active.front();
}

std::optional<Bitmap> X11WindowSystem::picture(const PixelRect& part) const
{
    return pictureThroughSharedMemory(*server, part);
}

} // namespace tallowbay::x11
