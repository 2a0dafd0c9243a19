#pragma once

#include "platform/EmbeddingTray.h"
#include "platform/WindowSystem.h"

#include <map>
#include <set>

namespace tallowbay::headless {

// A display server that composes nothing unless it is told to, and keeps what it was asked for.
class HeadlessWindowSystem final : public WindowSystem {
public:
    bool composesWindows() const override { return composes; }
    bool blursBehind() const override { return composes && blurs; }
    void blurBehind(NativeWindow window, const PixelRegion& region) override
    {
        blurred[window] = region;
    }
    void cutToShape(NativeWindow window, const PixelRegion& region) override
    {
        shapes[window] = region;
    }
    void keepOffTaskbar(NativeWindow window) override { offTaskbar.insert(window); }
    void activate(NativeWindow window) override { active = window; }
    NativeWindow activeWindow() const override { return active; }
    std::optional<Bitmap> picture(const PixelRect&) const override { return desktop; }
    std::string windowClass(NativeWindow window) const override
    {
        const auto found = classes.find(window);
        return found == classes.end() ? "" : found->second;
    }

    bool composes = false;
    bool blurs = false;
    std::optional<Bitmap> desktop;
    std::map<NativeWindow, PixelRegion> blurred;
    std::map<NativeWindow, PixelRegion> shapes;
    std::set<NativeWindow> offTaskbar;
    std::map<NativeWindow, std::string> classes;
    NativeWindow active = 0;
};

// No tray, unless it is given a window.
class HeadlessEmbeddingTray final : public EmbeddingTray {
public:
    NativeWindow window() const override { return trayWindow; }
    std::optional<Color> foreground() const override { return symbolColor; }
    bool showsIconAt(const PixelRect& place) const override { return iconIsSeen && !place.empty(); }

    NativeWindow trayWindow = 0;
    std::optional<Color> symbolColor;
    bool iconIsSeen = false;
};

} // namespace tallowbay::headless
