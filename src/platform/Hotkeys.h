#pragma once

#include "base/Subscription.h"
#include "platform/Keys.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace tallowbay {

// The modifiers of a hotkey, as a mask; its encoding is not that of the flags of a key event.
using HotkeyModifiers = std::uint32_t;

namespace hotkeyModifier {
inline constexpr HotkeyModifiers command = 0x100;
inline constexpr HotkeyModifiers shift = 0x200;
inline constexpr HotkeyModifiers option = 0x800;
inline constexpr HotkeyModifiers control = 0x1000;
} // namespace hotkeyModifier

// What a registration is known by when its keys are pressed.
struct HotkeyId {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
    bool operator==(const HotkeyId&) const = default;
};

// Combinations of keys that reach this program whatever program is in front, and no one else.
//
// Thread: main queue, the handler included. A combination is told by its key and exactly its four
// modifiers; the lock keys and the keyboard layout that is active do not matter. Nothing stays
// taken from other programs once its token, or this process, has ended in whatever way.
class Hotkeys {
public:
    using Handler = std::function<void(HotkeyId)>;
    virtual ~Hotkeys() = default;

    // Called once for each press until the token ends, in the order of the presses; never again
    // for a key that is held. A later handler replaces the former. Without one, presses are taken
    // and dropped.
    virtual Subscription install(Handler) = 0;

    // Lasts as long as the token. Empty if another program owns the combination, if no keyboard has
    // such a key, or if the session has no hotkeys; then nothing has changed. Of several
    // registrations of one combination here, the newest that lasts is reported.
    virtual std::optional<Subscription> registerHotkey(KeyCode, HotkeyModifiers, HotkeyId) = 0;

    // Whether presses of what is registered under the id reach this program. With another map of
    // the keyboard its keys may be another program's; they are taken again once they can be had.
    virtual bool reaches(HotkeyId) const = 0;

    // Called until the token ends, when a combination that was refused may be had now, or one that
    // was registered may be lost: another map of the keyboard is in use, or a program that owns
    // combinations has ended and whoever takes its place has had the time to. Not each such
    // program's end is told, so it is worth trying now and then. A later handler replaces the
    // former.
    virtual Subscription watchForFreed(std::function<void()>) = 0;
};

} // namespace tallowbay
