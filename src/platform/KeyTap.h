#pragma once

#include "base/Subscription.h"
#include "platform/Keys.h"

#include <functional>
#include <optional>

namespace tallowbay {

// Listens to every key press of the user's session without taking any away.
//
// Keys without a virtual key code are not reported. A paste that needs no V (Shift+Insert) is
// reported as V with Command and Shift.
class KeyTap {
public:
    // Called on the tap's own thread, in the order of the presses. What our own KeyPoster posted is
    // never reported; a key that repeats while it is held is reported once.
    using Handler = std::function<void(const KeyPress&)>;
    virtual ~KeyTap() = default;

    // Listens until the token ends. Empty if the session lets no one listen. Main queue only; one
    // tap at a time.
    virtual std::optional<Subscription> start(Handler) = 0;

    // Tells of each mouse button that the user presses, its wheel excepted, on the tap's own
    // thread, until the token ends. Never where the session lets no one listen. Main queue only;
    // one at a time.
    virtual Subscription watchClicks(std::function<void()>) = 0;
};

} // namespace tallowbay
