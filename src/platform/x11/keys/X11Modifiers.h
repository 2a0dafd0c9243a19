#pragma once

#include "platform/Hotkeys.h"

#include <cstdint>
#include <vector>

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

namespace tallowbay::x11 {

// Which bits of an X event's state stand for which modifier. Shift, Ctrl and Caps Lock have theirs
// for good; the others go by the keyboard's settings.
class X11Modifiers {
public:
    using Mask = std::uint16_t;

    // As most keyboards have it.
    X11Modifiers() = default;

    // As the server has it now: one round trip. The keymap tells which keys the modifiers are.
    X11Modifiers(xcb_connection_t*, xkb_keymap&);

    // Command is Ctrl, Option is Alt, Control is Super.
    Mask maskOf(HotkeyModifiers) const;

    // What is held, without the locks: Caps Lock, Num Lock, Scroll Lock.
    Mask withoutLocks(Mask state) const;

    // Every mask that some of the locks can make, none included.
    std::vector<Mask> lockVariants() const;

    bool operator==(const X11Modifiers&) const = default;

private:
    Mask alt = XCB_MOD_MASK_1;
    Mask super = XCB_MOD_MASK_4;
    Mask numLock = XCB_MOD_MASK_2;
    Mask scrollLock = 0;
};

} // namespace tallowbay::x11
