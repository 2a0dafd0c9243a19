#pragma once

#include "platform/EmbeddingTray.h"
#include "platform/x11/windows/X11Queries.h"

namespace tallowbay::x11 {

// The owner of the tray selection. Asks over the toolkit's own connection, which outlives it, and
// by which it knows the icons for ours.
class X11EmbeddingTray final : public EmbeddingTray {
public:
    explicit X11EmbeddingTray(xcb_connection_t& server)
        : queries(server)
    {
    }

    NativeWindow window() const override;
    std::optional<Color> foreground() const override;
    bool showsIconAt(const PixelRect&) const override;

private:
    const X11Queries queries;
};

} // namespace tallowbay::x11
