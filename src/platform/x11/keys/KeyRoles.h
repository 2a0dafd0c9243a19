#pragma once

#include "platform/Keys.h"

#include <cstdint>

#include <xcb/xproto.h>

namespace tallowbay::x11 {

// The modifiers of the X server that play a role.
struct KeyRole {
    xcb_mod_mask_t modifier;
    EventFlags flag;
};
inline constexpr KeyRole keyRoles[] = {
    {XCB_MOD_MASK_SHIFT, eventFlag::shift},
    {XCB_MOD_MASK_CONTROL, eventFlag::command},
    {XCB_MOD_MASK_1, eventFlag::option},
    {XCB_MOD_MASK_4, eventFlag::control}};

constexpr EventFlags flagsOf(unsigned modifiers)
{
    EventFlags flags = 0;
    for (const KeyRole& role : keyRoles)
        if (modifiers & role.modifier)
            flags |= role.flag;
    return flags;
}

constexpr std::uint8_t modifiersOf(EventFlags flags)
{
    unsigned modifiers = 0;
    for (const KeyRole& role : keyRoles)
        if (flags & role.flag)
            modifiers |= role.modifier;
    return static_cast<std::uint8_t>(modifiers);
}

} // namespace tallowbay::x11
