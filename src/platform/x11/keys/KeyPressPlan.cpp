#include "platform/x11/keys/KeyPressPlan.h"

#include "platform/x11/keys/KeyRoles.h"

namespace tallowbay::x11 {

namespace {

constexpr HardwareKey numLockKey = 77;

} // namespace

std::optional<KeyPressPlan> planKeyPress(
    const KeyboardLayout& layout, const KeyboardMoment& now, KeyCode code, std::uint8_t wanted)
{
    const auto key = layout.key(code, now.group);
    if (!key)
        return std::nullopt;
    KeyPressPlan plan;
    const unsigned harmless = XCB_MOD_MASK_LOCK | layout.modifiers(numLockKey, now.group);
    const unsigned unwanted = ~(wanted | harmless);
    plan.undo = std::uint8_t(now.latchedOrLocked & unwanted);

    unsigned present = now.latchedOrLocked;
    for (const HardwareKey held : now.down) {
        const std::uint8_t modifiers = layout.modifiers(held, now.group);
        // A key that is down already would not be seen to go down.
        if ((modifiers & unwanted) || held == *key)
            plan.release.push_back(held);
        else
            present |= modifiers;
    }
    for (const KeyRole& role : keyRoles) {
        if (!(wanted & ~present & role.modifier))
            continue;
        const auto modifier = layout.modifierKey(role.modifier, now.group);
        if (!modifier)
            return std::nullopt;
        plan.press.push_back(*modifier);
    }
    plan.press.push_back(*key);
    return plan;
}

} // namespace tallowbay::x11
