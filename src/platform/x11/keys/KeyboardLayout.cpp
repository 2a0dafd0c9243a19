#include "platform/x11/keys/KeyboardLayout.h"

#include <algorithm>
#include <memory>
#include <set>

namespace tallowbay::x11 {
namespace {

using Letters = std::array<char, 256>; // by hardware key; 0 if it types none
using Codes = std::array<std::optional<KeyCode>, 256>;
using Modifiers = std::array<std::uint8_t, 256>;

constexpr int firstKey = 8;
constexpr int lastKey = 255;

char letterOf(xkb_keymap& keymap, HardwareKey key, xkb_layout_index_t group)
{
    const xkb_layout_index_t count = xkb_keymap_num_layouts_for_key(&keymap, key);
    const xkb_keysym_t* symbols = nullptr;
    if (count == 0
        || xkb_keymap_key_get_syms_by_level(&keymap, key, group % count, 0, &symbols) != 1)
        return 0;
    const xkb_keysym_t symbol = xkb_keysym_to_lower(symbols[0]);
    return symbol >= XKB_KEY_a && symbol <= XKB_KEY_z ? char(symbol) : char(0);
}

std::vector<Letters> lettersOf(xkb_keymap& keymap)
{
    std::vector<Letters> groups(std::max(xkb_keymap_num_layouts(&keymap), 1u));
    for (xkb_layout_index_t group = 0; group < groups.size(); ++group)
        for (int key = firstKey; key <= lastKey; ++key)
            groups[group][std::size_t(key)] = letterOf(keymap, HardwareKey(key), group);
    return groups;
}

bool types(const Letters& letters, char letter)
{
    return std::ranges::find(letters, letter) != letters.end();
}

// The group itself, and for the letters that it lacks the first other group that has them.
Letters completed(const std::vector<Letters>& groups, std::size_t group)
{
    Letters result = groups[group];
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        const auto other = std::ranges::find_if(
            groups, [letter](const Letters& letters) { return types(letters, letter); });
        if (types(groups[group], letter) || other == groups.end())
            continue;
        for (std::size_t key = 0; key < result.size(); ++key)
            if ((*other)[key] == letter && !result[key])
                result[key] = letter;
    }
    return result;
}

KeyCode codeOfLetter(char letter)
{
    return std::ranges::find(virtualKeys(), letter, &VirtualKey::letter)->code;
}

Codes codesOf(const Letters& letters)
{
    Codes codes;
    std::set<KeyCode> taken;
    for (std::size_t key = 0; key < letters.size(); ++key)
        if (letters[key])
            taken.insert(*(codes[key] = codeOfLetter(letters[key])));

    std::vector<HardwareKey> keysLeft;
    std::vector<KeyCode> codesLeft;
    for (const VirtualKey& place : virtualKeys()) {
        const bool keyIsFree = !codes[place.hardware];
        const bool codeIsFree = !taken.contains(place.code);
        if (keyIsFree && codeIsFree)
            codes[place.hardware] = place.code;
        else if (keyIsFree)
            keysLeft.push_back(place.hardware);
        else if (codeIsFree)
            codesLeft.push_back(place.code);
    }
    for (std::size_t i = 0; i < std::min(keysLeft.size(), codesLeft.size()); ++i)
        codes[keysLeft[i]] = codesLeft[i];
    return codes;
}

// Asked of the keymap's own state machine: the modifier map of the core protocol does not know the
// keys that shift levels only.
Modifiers modifiersOf(xkb_keymap& keymap, xkb_layout_index_t group)
{
    constexpr xkb_mod_mask_t real = 0xff;
    Modifiers modifiers{};
    for (int key = firstKey; key <= lastKey; ++key) {
        const std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> state(
            xkb_state_new(&keymap), &xkb_state_unref);
        xkb_state_update_mask(state.get(), 0, 0, 0, 0, 0, group);
        xkb_state_update_key(state.get(), xkb_keycode_t(key), XKB_KEY_DOWN);
        modifiers[std::size_t(key)] =
            std::uint8_t(xkb_state_serialize_mods(state.get(), XKB_STATE_MODS_DEPRESSED) & real);
    }
    return modifiers;
}

} // namespace

KeyboardLayout::KeyboardLayout()
    : groups{Group{codesOf(Letters{}), {}}}
{
}

KeyboardLayout::KeyboardLayout(xkb_keymap& keymap)
{
    const std::vector<Letters> letters = lettersOf(keymap);
    for (std::size_t group = 0; group < letters.size(); ++group)
        groups.push_back(
            {codesOf(completed(letters, group)), modifiersOf(keymap, xkb_layout_index_t(group))});
}

std::optional<KeyCode> KeyboardLayout::code(HardwareKey key, xkb_layout_index_t group) const
{
    return at(group).codes[key];
}

std::optional<HardwareKey> KeyboardLayout::key(KeyCode code, xkb_layout_index_t group) const
{
    const Codes& codes = at(group).codes;
    const auto place = std::ranges::find(codes, std::optional(code));
    if (place == codes.end())
        return std::nullopt;
    return HardwareKey(place - codes.begin());
}

std::uint8_t KeyboardLayout::modifiers(HardwareKey key, xkb_layout_index_t group) const
{
    return at(group).modifiers[key];
}

std::optional<HardwareKey> KeyboardLayout::modifierKey(
    std::uint8_t modifier, xkb_layout_index_t group) const
{
    const Modifiers& modifiers = at(group).modifiers;
    const auto place = std::ranges::find(modifiers, modifier);
    if (modifier == 0 || place == modifiers.end())
        return std::nullopt;
    return HardwareKey(place - modifiers.begin());
}

} // namespace tallowbay::x11
