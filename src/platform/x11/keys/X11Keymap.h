#pragma once

#include <memory>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

namespace tallowbay::x11 {

struct KeymapDeleter {
    void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
};

using Keymap = std::unique_ptr<xkb_keymap, KeymapDeleter>;

// The keyboard of an X server as it is set up now. Null if the server does not tell. Several round
// trips, on any thread but the one that takes the connection's events.
Keymap readKeymap(xcb_connection_t*);

} // namespace tallowbay::x11
