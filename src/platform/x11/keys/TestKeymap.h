#pragma once

#include "platform/x11/keys/KeyboardLayout.h"

#include <memory>
#include <string>

namespace tallowbay::x11 {

// A layout of the keyboard database, such as "us,ru" with the variants ",phonetic".
inline KeyboardLayout testLayout(
    const std::string& names, const std::string& variant = {}, const std::string& options = {})
{
    const std::unique_ptr<xkb_context, decltype(&xkb_context_unref)> context(
        xkb_context_new(XKB_CONTEXT_NO_FLAGS), &xkb_context_unref);
    const xkb_rule_names rules{"evdev", "pc105", names.c_str(), variant.c_str(), options.c_str()};
    const std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> keymap(
        xkb_keymap_new_from_names(context.get(), &rules, XKB_KEYMAP_COMPILE_NO_FLAGS),
        &xkb_keymap_unref);
    return KeyboardLayout(*keymap);
}

} // namespace tallowbay::x11
