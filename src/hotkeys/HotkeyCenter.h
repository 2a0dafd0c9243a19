#pragma once

#include "hotkeys/HotkeyTarget.h"

#include <functional>
#include <optional>

namespace tallowbay {

class UserDefaults;

// The four global hotkeys: what the user stored for each, their registrations, and what a press
// does. A combination that the system refuses does nothing.
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

    HotkeyCenter(Hotkeys&, UserDefaults&, Actions);

    // Listens to presses, then registers all four.
    void start();

    // Gives all combinations back.
    void stop();

    // The combination in use for a target: the stored one or the default.
    HotkeyConfig config(HotkeyTarget) const;

    // Stores another combination and takes it instead of the present one.
    void updateHotkey(HotkeyTarget, const HotkeyConfig&);

    // Registers the defaults. Nothing stays stored.
    void resetHotkeysToDefault();

    // While set, a press does nothing: the settings are recording a new combination.
    bool isRecordingHotkey = false;

private:
    using Handle = std::optional<Subscription>;

    Handle& handleOf(HotkeyTarget);
    void registerHotkey(HotkeyTarget, const HotkeyConfig&);
    void dispatch(HotkeyId);
    std::function<void()> actionOf(std::uint32_t id) const;

    Hotkeys& hotkeys;
    UserDefaults& defaults;
    const Actions actions;
    Subscription dispatcher;
    Handle ocrHotKeyRef;
    Handle annotationHotKeyRef;
    Handle undoLastHotKeyRef;
    Handle clearAllHotKeyRef;
};

} // namespace tallowbay
