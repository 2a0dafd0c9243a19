#pragma once

#include "platform/KeyPoster.h"
#include "platform/KeyTap.h"
#include "platform/Keys.h"

#include <utility>
#include <vector>

namespace tallowbay::headless {

// The test types. The handler runs inside press(), as on the tap's thread.
class HandFedKeyTap final : public KeyTap {
public:
    std::optional<Subscription> start(Handler started) override;
    Subscription watchClicks(std::function<void()> clicked) override;

    void press(KeyCode, EventFlags);
    void click() const;
    bool running() const { return static_cast<bool>(handler); }
    void failNextStart() { failStart = true; }

    int startCount = 0;

private:
    Handler handler;
    std::function<void()> onClick;
    bool failStart = false;
};

// Keeps what was posted.
class JournalKeyPoster final : public KeyPoster {
public:
    struct Posted {
        KeyCode keyCode = 0;
        KeyDirection direction = KeyDirection::down;
        EventFlags flags = 0;
        bool operator==(const Posted&) const = default;
    };

    void post(KeyCode keyCode, KeyDirection direction, EventFlags flags) override;

    std::vector<Posted> journal;
    std::function<void(const Posted&)> onPost; // optional: what the program in front does with it
};

} // namespace tallowbay::headless
