#pragma once

#include "base/Lifetime.h"
#include "base/Subscription.h"
#include "platform/Keys.h"
#include "platform/Platform.h"

#include <atomic>
#include <functional>
#include <optional>

namespace tallowbay {

// Notices when the user pastes, in whatever program, and can paste for the user.
//
// Thread: main queue. The key tap calls in on a thread of its own, which does nothing but hand over
// to the main queue.
class PasteWatcher {
public:
    PasteWatcher(const Platform&, std::function<void()> onPaste);

    // Listens as soon as the session lets us; asks every two seconds until then.
    void startPasteWatcher();

    // From now on each key that the user presses is told, or none any more. On the main queue.
    void tellOfKeys(bool wanted) { tellsOfKeys = wanted; }
    std::function<void()> onKey;

    // Posts a synthetic Cmd+V.
    void firePaste();

    void disableEventTap() { eventTap.reset(); }
    void stopPolling() { accessibilityPollTimer.reset(); }

private:
    void startEventTap();
    void tapped(const KeyPress&);

    const Platform platform;
    std::function<void()> onPaste;
    std::atomic<bool> tellsOfKeys = false;
    Subscription accessibilityPollTimer;
    Lifetime lifetime;
    std::optional<Subscription> eventTap; // goes first: its thread uses the rest
};

} // namespace tallowbay
