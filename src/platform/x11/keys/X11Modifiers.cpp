#include "platform/x11/keys/X11Modifiers.h"

#include "platform/x11/X11Event.h"

#include <algorithm>

namespace tallowbay::x11 {

namespace {

using Mask = X11Modifiers::Mask;

constexpr Mask allModifiers = 0xFF; // above them are pointer buttons and the group
constexpr int modifierCount = 8;

bool hasSymbol(xkb_keymap& keymap, xcb_keycode_t key, const std::vector<xkb_keysym_t>& wanted)
{
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(&keymap, key);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        const xkb_keysym_t* symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(&keymap, key, group, 0, &symbols);
        if (count == 1 && std::ranges::find(wanted, symbols[0]) != wanted.end())
            return true;
    }
    return false;
}

// The modifiers that keys with one of the symbols set.
Mask maskWith(
    const xcb_get_modifier_mapping_reply_t& mapping, xkb_keymap& keymap,
    const std::vector<xkb_keysym_t>& symbols)
{
    const xcb_keycode_t* keys = xcb_get_modifier_mapping_keycodes(&mapping);
    const int perModifier = mapping.keycodes_per_modifier;
    for (int modifier = 3; modifier < modifierCount; ++modifier) {
        const auto* first = keys + modifier * perModifier;
        const auto isOne = [&](xcb_keycode_t key) {
            return key != 0 && hasSymbol(keymap, key, symbols);
        };
        if (std::any_of(first, first + perModifier, isOne))
            return static_cast<Mask>(1 << modifier);
    }
    return 0;
}

} // namespace

X11Modifiers::X11Modifiers(xcb_connection_t* server, xkb_keymap& keymap)
{
    const auto mapping =
        owned(xcb_get_modifier_mapping_reply(server, xcb_get_modifier_mapping(server), nullptr));
    if (!mapping)
        return;
    if (const Mask found = maskWith(*mapping, keymap, {XKB_KEY_Alt_L, XKB_KEY_Alt_R}))
        alt = found;
    if (const Mask found = maskWith(*mapping, keymap, {XKB_KEY_Super_L, XKB_KEY_Super_R}))
        super = found;
    numLock = maskWith(*mapping, keymap, {XKB_KEY_Num_Lock});
    scrollLock = maskWith(*mapping, keymap, {XKB_KEY_Scroll_Lock});
}

Mask X11Modifiers::maskOf(HotkeyModifiers modifiers) const
{
    const auto bit = [&](HotkeyModifiers modifier, Mask mask) {
        return (modifiers & modifier) != 0 ? mask : Mask(0);
    };
    return bit(hotkeyModifier::command, XCB_MOD_MASK_CONTROL)
        | bit(hotkeyModifier::shift, XCB_MOD_MASK_SHIFT) | bit(hotkeyModifier::option, alt)
        | bit(hotkeyModifier::control, super);
}

Mask X11Modifiers::withoutLocks(Mask state) const
{
    return state & allModifiers & ~(XCB_MOD_MASK_LOCK | numLock | scrollLock);
}

std::vector<Mask> X11Modifiers::lockVariants() const
{
    std::vector<Mask> variants{0};
    for (const Mask lock : {Mask(XCB_MOD_MASK_LOCK), numLock, scrollLock}) {
        if (lock == 0)
            continue;
        const auto without = variants;
        for (const Mask variant : without)
            variants.push_back(variant | lock);
    }
    return variants;
}

} // namespace tallowbay::x11
