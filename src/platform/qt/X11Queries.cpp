#include "platform/qt/X11Queries.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace tallowbay::qt {

namespace {

template <typename Reply> using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply> Owned<Reply> owned(Reply* reply)
{
    return {reply, &std::free};
}

QNativeInterface::QX11Application* x11()
{
    return qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
}

xcb_connection_t* connection()
{
    const auto* application = x11();
    return application ? application->connection() : nullptr;
}

constexpr xcb_atom_t noAtom = XCB_ATOM_NONE;

// Empty connections have no atoms.
xcb_atom_t atom(xcb_connection_t* server, const std::string& name, bool onlyIfExists = true)
{
    if (!server)
        return noAtom;
    const auto cookie =
        xcb_intern_atom(server, onlyIfExists, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = owned(xcb_intern_atom_reply(server, cookie, nullptr));
    return reply ? reply->atom : noAtom;
}

// Null if there is no such window.
Owned<xcb_get_property_reply_t> readProperty(std::uint32_t window, const std::string& name)
{
    constexpr std::uint32_t mostWords = 16'384;
    auto* server = connection();
    const auto property = atom(server, name);
    if (window == 0 || property == noAtom)
        return owned<xcb_get_property_reply_t>(nullptr);
    const auto cookie =
        xcb_get_property(server, false, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, mostWords);
    return owned(xcb_get_property_reply(server, cookie, nullptr));
}

// The innermost window at a place of the desktop, in device pixels; the root if there is no other.
std::uint32_t windowAt(const QPoint& place)
{
    std::uint32_t found = rootWindow();
    for (std::uint32_t next = found; next != 0;) {
        found = next;
        const auto cookie = xcb_translate_coordinates(
            connection(), rootWindow(), found, static_cast<std::int16_t>(place.x()),
            static_cast<std::int16_t>(place.y()));
        const auto reply = owned(xcb_translate_coordinates_reply(connection(), cookie, nullptr));
        next = reply ? reply->child : 0;
    }
    return found;
}

bool isOwn(std::uint32_t window)
{
    const ResourceNumbers own = ownResourceNumbers();
    return (window & ~own.mask) == own.base;
}

int widthOf(std::uint32_t window)
{
    const auto reply = owned(
        xcb_get_geometry_reply(connection(), xcb_get_geometry(connection(), window), nullptr));
    return reply ? reply->width : 0;
}

} // namespace

std::uint32_t selectionOwner(const std::string& selection)
{
    auto* server = connection();
    const auto name = atom(server, selection);
    if (name == noAtom)
        return 0;
    const auto reply = owned(
        xcb_get_selection_owner_reply(server, xcb_get_selection_owner(server, name), nullptr));
    return reply ? reply->owner : 0;
}

// Qt runs on the display's default screen; servers with several of them are history, but one may
// be addressed as ":0.1".
std::string withScreenNumber(const std::string& prefix)
{
    int display = 0;
    int screen = 0;
    char* host = nullptr;
    if (xcb_parse_display(nullptr, &host, &display, &screen))
        std::free(host);
    return prefix + std::to_string(screen);
}

std::vector<std::uint32_t> windowProperty(std::uint32_t window, const std::string& name)
{
    const auto reply = readProperty(window, name);
    if (!reply || reply->format != 32)
        return {};
    const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

std::string windowBytes(std::uint32_t window, const std::string& name)
{
    const auto reply = readProperty(window, name);
    if (!reply || reply->format != 8)
        return {};
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {bytes, bytes + reply->value_len};
}

bool hasProperty(std::uint32_t window, const std::string& name)
{
    const auto reply = readProperty(window, name);
    return reply && reply->type != noAtom;
}

void setWindowProperty(
    std::uint32_t window, const std::string& name, const std::vector<std::uint32_t>& values)
{
    auto* server = connection();
    const auto property = atom(server, name, false);
    if (window == 0 || property == noAtom)
        return;
    xcb_change_property(
        server, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL, 32,
        static_cast<std::uint32_t>(values.size()), values.data());
}

std::uint32_t rootWindow()
{
    auto* server = connection();
    return server ? xcb_setup_roots_iterator(xcb_get_setup(server)).data->root : 0;
}

ResourceNumbers ownResourceNumbers()
{
    const auto* setup = connection() ? xcb_get_setup(connection()) : nullptr;
    return setup ? ResourceNumbers{setup->resource_id_base, setup->resource_id_mask}
                 : ResourceNumbers{};
}

bool isSeen(const QRect& icon)
{
    const QScreen* screen = QGuiApplication::screenAt(icon.center());
    if (!connection() || !screen)
        return false;
    const QPoint origin = screen->geometry().topLeft();
    const double scale = screen->devicePixelRatio();
    const auto window = windowAt(((icon.center() - origin) * scale) + origin);
    return isOwn(window) && widthOf(window) < 2 * scale * icon.width();
}

bool hasCompositingManager()
{
    return selectionOwner(withScreenNumber("_NET_WM_CM_S")) != 0;
}

} // namespace tallowbay::qt
