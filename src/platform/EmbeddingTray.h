#pragma once

#include "base/Geometry.h"
#include "base/PixelRect.h"
#include "platform/WindowSystem.h"

#include <optional>

namespace tallowbay {

// The tray that takes in small windows of other programs as icons, where the desktop has one. Trays
// that are told of icons over the message bus are none.
//
// Thread: main queue. An answer may take some round trips to the display server.
class EmbeddingTray {
public:
    virtual ~EmbeddingTray() = default;

    // The tray's window; 0 while there is no tray. After the tray was started anew it is another.
    virtual NativeWindow window() const = 0;

    // The colour of the symbols that suit the tray. Empty if it does not say.
    virtual std::optional<Color> foreground() const = 0;

    // Whether what a person sees in the middle of this place of the desktop is an icon of ours, of
    // about that size, and nothing that lies over it. No icon is seen in an empty place.
    virtual bool showsIconAt(const PixelRect&) const = 0;
};

} // namespace tallowbay
