#pragma once

#include "base/Bitmap.h"
#include "platform/Graphics.h"

#include <functional>
#include <optional>

namespace tallowbay {

// The longest side of a surface in memory, in pixels.
inline constexpr int offscreenLimit = 32767;

// Draws into memory instead of onto a screen.
//
// Thread: any; several drawings may run at once.
class OffscreenGraphics {
public:
    using Drawing = std::function<void(GraphicsContext&)>;
    virtual ~OffscreenGraphics() = default;

    // Calls the drawing exactly once, before it returns, with a transparent surface of this many
    // pixels. One unit of the context is pixelsPerUnit pixels, whatever the screen's own scale.
    // Empty, without a call, if no such surface can be made: a side below 1 or above
    // offscreenLimit, or too little memory.
    virtual std::optional<Bitmap> draw(PixelSize, double pixelsPerUnit, const Drawing&) const = 0;
};

} // namespace tallowbay
