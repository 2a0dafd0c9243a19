#pragma once

#include "platform/Dispatch.h"
#include "platform/Hotkeys.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tallowbay::headless {

// The test presses the keys; the report comes by the main queue.
class HandFedHotkeys final : public Hotkeys {
public:
    using Combination = std::pair<KeyCode, HotkeyModifiers>;

    struct Registration {
        Combination combination;
        HotkeyId id;
        bool operator==(const Registration&) const = default;
    };

    explicit HandFedHotkeys(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    Subscription install(Handler) override;
    std::optional<Subscription> registerHotkey(KeyCode, HotkeyModifiers, HotkeyId) override;

    bool reaches(HotkeyId) const override;

    Subscription watchForFreed(std::function<void()>) override;

    void press(KeyCode, HotkeyModifiers);

    // Hands an id to the handler, on the main queue, whether it is registered or not.
    void report(HotkeyId);

    // From now on another program has these keys, even if they are registered here.
    void takeElsewhere(KeyCode, HotkeyModifiers);

    // It has them no more, and nobody is told.
    void giveBackElsewhere(KeyCode, HotkeyModifiers);

    // What another program's end tells, by the main queue.
    void tellFreed();

    bool installed() const { return static_cast<bool>(handler); }
    std::vector<Registration> registered() const; // oldest first

    // What happened, in order, such as "install", "register 1", "unregister 1", "refuse 2".
    std::vector<std::string> journal;
    std::function<void()> onChange; // optional: called after each line of the journal

private:
    bool isForeign(const Combination&) const;
    void note(const std::string& line);
    void end(int token);

    Dispatch& dispatch;
    std::shared_ptr<Handler> handler;
    std::shared_ptr<std::function<void()>> freedHandler;
    std::map<int, Registration> registrations; // by their tokens
    std::vector<Combination> foreign;
    int lastToken = 0;
};

} // namespace tallowbay::headless
