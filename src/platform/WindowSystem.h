#pragma once

#include "base/Bitmap.h"
#include "base/PixelRect.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tallowbay {

// The number by which the display server knows a window; 0 is none.
using NativeWindow = std::uint64_t;

// What the display server does for our windows that the toolkit has no words for.
//
// The windows are this program's own and exist. Regions are in the window's own device pixels, and
// replace the last one that was given. What is asked for keeps its order with the toolkit's own
// requests: asked before a window is shown, it holds from the window's first moment on. Nothing
// fails: a wish that this desktop does not know is no wish.
//
// Thread: main queue. An answer may take a round trip to the server.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    // Whether windows are composed, so that what lies below a translucent one shines through. Else
    // its pixels are all opaque. May change at any time.
    virtual bool composesWindows() const = 0;

    // Whether what shines through a window can be blurred; never where windows are not composed.
    virtual bool blursBehind() const = 0;

    // Blurs what shines through the window there. An empty region takes the wish back.
    virtual void blurBehind(NativeWindow, const PixelRegion&) = 0;

    // Leaves of the window only this much: elsewhere the window is neither seen nor clicked, as if
    // it were not there. Of an empty region nothing is left. Where windows can only be rectangles,
    // the window stays one.
    virtual void cutToShape(NativeWindow, const PixelRegion&) = 0;

    // Keeps the window off the lists in which the user chooses among windows: taskbar and pager.
    // Holds for the window's next time on the screen.
    virtual void keepOffTaskbar(NativeWindow) = 0;

    // Gives the window, which is shown, the keyboard. It may be another program's that had it, and
    // is gone by now: then nothing happens. The user has just asked for it, in a way that
    // the desktop may not know of.
    virtual void activate(NativeWindow) = 0;

    // The window that has the keyboard, of whatever program. 0 if none has, or nobody knows.
    virtual NativeWindow activeWindow() const = 0;

    // What is seen of the desktop there, opaque; the rectangle, in the server's pixels, lies on its
    // screen. Empty where that cannot be had fast: the toolkit may know another way.
    virtual std::optional<Bitmap> picture(const PixelRect&) const = 0;

    // What sort of program the window says it belongs to, such as "firefox-esr". Empty if it does
    // not say, or is gone.
    virtual std::string windowClass(NativeWindow) const = 0;
};

} // namespace tallowbay
