#pragma once

#include "platform/WindowSystem.h"
#include "platform/x11/windows/X11Queries.h"

namespace tallowbay::x11 {

// Speaks over the toolkit's own connection, which outlives it: so requests keep their order with
// the toolkit's, and are sent with them.
class X11WindowSystem final : public WindowSystem {
public:
    explicit X11WindowSystem(xcb_connection_t&);

    bool composesWindows() const override;
    bool blursBehind() const override;
    void blurBehind(NativeWindow, const PixelRegion&) override;
    void cutToShape(NativeWindow, const PixelRegion&) override;
    void keepOffTaskbar(NativeWindow) override;
    void activate(NativeWindow) override;
    NativeWindow activeWindow() const override;
    std::optional<Bitmap> picture(const PixelRect&) const override;
    std::string windowClass(NativeWindow) const override;

private:
    xcb_connection_t* server;
    const X11Queries queries;
    const bool hasShapes;
};

} // namespace tallowbay::x11
