#pragma once

#include "base/Lifetime.h"
#include "platform/Dispatch.h"
#include "platform/Hotkeys.h"
#include "platform/x11/X11Session.h"
#include "platform/x11/keys/KeyboardLayout.h"
#include "platform/x11/keys/X11KeyGrabs.h"

#include <atomic>
#include <map>
#include <memory>
#include <set>

namespace tallowbay::x11 {

// Hotkeys as keys that the X server hands to us alone. They go by the active layout, and follow it.
//
// A combination that was registered may become another program's with a change of the layout; it
// does nothing then, until a further change, the end of the window manager, or another
// registration.
class X11Hotkeys final : public Hotkeys {
public:
    X11Hotkeys(X11Session&, Dispatch&);
    ~X11Hotkeys() override;

    Subscription install(Handler) override;
    std::optional<Subscription> registerHotkey(KeyCode, HotkeyModifiers, HotkeyId) override;

    bool reaches(HotkeyId) const override;

    // No event tells that a key is given up. Most keys are the window manager's, whose end is seen
    // by that of the window by which it shows that it is there.
    Subscription watchForFreed(std::function<void()>) override;

private:
    struct Registration {
        KeyCode code;
        HotkeyModifiers modifiers;
        HotkeyId id;
    };

    void followKeyboard();
    void showOnThread(const X11Event&);
    void readKeyboard();
    void setGroup(xkb_layout_index_t);
    std::set<X11KeyGrabs::Key> keysOf(const Registration&) const;
    bool isHeld(const Registration&) const;
    void holdKeys();
    void followManager();
    void tellFreedSoon();
    void handle(const X11Event&);
    void press(HardwareKey, std::uint16_t state);
    void release(HardwareKey);
    const Registration* newest(HardwareKey, std::uint16_t state) const;

    X11Session& session;
    Dispatch& dispatch;
    std::unique_ptr<KeyboardLayout> layout; // null if the server does not tell
    X11Modifiers modifiers;
    xkb_layout_index_t group = 0;
    X11KeyGrabs grabs;
    std::map<int, Registration> registrations; // by their tokens
    int lastToken = 0;
    std::optional<HardwareKey> grabbingKey; // all keys come to us until it is released
    std::set<HardwareKey> heldKeys; // whose presses are repetitions
    std::shared_ptr<Handler> handler;
    std::shared_ptr<std::function<void()>> freedHandler;
    xcb_window_t managersWindow = XCB_NONE; // whose end is told to us
    bool tellingSoon = false;
    std::shared_ptr<std::atomic<bool>> readingSoon = std::make_shared<std::atomic<bool>>(false);
    Lifetime lifetime;
    Subscription watchingThread;
    Subscription watchingMain;
};

} // namespace tallowbay::x11
