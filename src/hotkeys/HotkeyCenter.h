#pragma once

#include "hotkeys/HotkeyTarget.h"

#include <array>
#include <functional>
#include <optional>

namespace tallowbay {

class Dispatch;
class UserDefaults;

// The four global hotkeys: what the user stored for each, their registrations, and what a press
// does. A combination that the system refuses does nothing; but for a default that is refused the
// target's second choice is taken, unless another target has that.
//
// What is refused or lost is tried again when it may have become free, and every ten seconds: by
// itself a target always ends up with what it would get if the program started now. So a default
// that can be had again takes the place of the second choice.
//
// Thread: main queue.
class HotkeyCenter {
public:
    // What the hotkeys do. An action that is missing does nothing.
    struct Actions {
        std::function<void()> triggerOCR;
        std::function<void()> openAnnotationWindow;
        std::function<void()> undoLastScreenshot;
        std::function<void()> clearAllScreenshots;
    };

    HotkeyCenter(Dispatch&, Hotkeys&, UserDefaults&, Actions);

    // Listens to presses, then registers all four.
    void start();

    // Gives all combinations back.
    void stop();

    // The combination that is wanted for a target: the stored one or the default.
    HotkeyConfig config(HotkeyTarget) const;

    // The one that works: the wanted one, or the second choice. Empty: all were refused, or became
    // another program's with another layout of the keyboard, or nothing is registered.
    std::optional<HotkeyConfig> working(HotkeyTarget) const;

    // Stores another combination and takes it instead of the present one.
    void updateHotkey(HotkeyTarget, const HotkeyConfig&);

    // Registers the defaults. Nothing stays stored.
    void resetHotkeysToDefault();

    // While set, a press does nothing: the settings are recording a new combination.
    bool isRecordingHotkey = false;

private:
    struct Handle {
        std::optional<Subscription> registration;
        std::optional<HotkeyConfig> config; // of the registration
    };

    Handle& handleOf(HotkeyTarget);
    const Handle& handleOf(HotkeyTarget) const;
    void replace(HotkeyTarget, const HotkeyConfig&);
    void registerDefault(HotkeyTarget);
    void retryDefaults();
    void retryRefused();
    void followRefusals();
    bool isRefused(HotkeyTarget) const;
    bool registerHotkey(HotkeyTarget, const HotkeyConfig&);
    bool isWantedByAnother(HotkeyTarget, const HotkeyConfig&) const;
    void giveUpSecondChoices(const HotkeyConfig& taken);
    void dispatch(HotkeyId);
    std::function<void()> actionOf(std::uint32_t id) const;

    Dispatch& queue;
    Hotkeys& hotkeys;
    UserDefaults& defaults;
    const Actions actions;
    Subscription dispatcher;
    std::array<Handle, hotkeyTargets.size()> handles; // in the order of the targets
    Subscription watchingForFreed;
    std::optional<Subscription> retryTimer; // while a target lacks what is wanted for it
};

} // namespace tallowbay
