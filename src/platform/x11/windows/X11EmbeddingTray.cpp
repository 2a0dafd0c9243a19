#include "platform/x11/windows/X11EmbeddingTray.h"

#include <algorithm>

namespace tallowbay::x11 {

NativeWindow X11EmbeddingTray::window() const
{
    return queries.selectionOwner(withScreenNumber("_NET_SYSTEM_TRAY_S"));
}

// The property holds red, green and blue of four colours, the foreground first, each as 16 bits.
std::optional<Color> X11EmbeddingTray::foreground() const
{
    const auto values =
        queries.values(static_cast<xcb_window_t>(window()), "_NET_SYSTEM_TRAY_COLORS");
    if (values.size() < 3)
        return std::nullopt;
    const auto component = [&](int index) {
        return std::min<std::uint32_t>(values[index], 0xffff) / double(0xffff);
    };
    return Color{component(0), component(1), component(2)};
}

bool X11EmbeddingTray::showsIconAt(const PixelRect& place) const
{
    if (place.empty())
        return false;
    const auto found = queries.windowAt(place.x + place.width / 2, place.y + place.height / 2);
    return queries.isOwn(found) && queries.widthOf(found) < 2 * place.width;
}

} // namespace tallowbay::x11
