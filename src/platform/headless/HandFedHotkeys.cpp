#include "platform/headless/HandFedHotkeys.h"

#include <algorithm>

namespace tallowbay::headless {

namespace {

// No key has a code beyond these.
constexpr KeyCode keyCodeEnd = 128;

} // namespace

void HandFedHotkeys::note(const std::string& line)
{
    journal.push_back(line);
    if (onChange)
        onChange();
}

Subscription HandFedHotkeys::install(Handler installed)
{
    handler = std::make_shared<Handler>(std::move(installed));
    note("install");
    return Subscription([this, mine = std::weak_ptr(handler)] {
        if (handler == mine.lock())
            handler.reset();
    });
}

std::optional<Subscription> HandFedHotkeys::registerHotkey(
    KeyCode keyCode, HotkeyModifiers modifiers, HotkeyId id)
{
    const Combination combination{keyCode, modifiers};
    if (keyCode >= keyCodeEnd || isForeign(combination)) {
        note("refuse " + std::to_string(id.id));
        return std::nullopt;
    }
    registrations[++lastToken] = {combination, id};
    note("register " + std::to_string(id.id));
    return Subscription([this, token = lastToken] { end(token); });
}

bool HandFedHotkeys::isForeign(const Combination& combination) const
{
    return std::ranges::find(foreign, combination) != foreign.end();
}

bool HandFedHotkeys::reaches(HotkeyId id) const
{
    return std::ranges::any_of(registrations, [&](const auto& entry) {
        return entry.second.id == id && !isForeign(entry.second.combination);
    });
}

void HandFedHotkeys::end(int token)
{
    const auto ended = registrations.extract(token);
    note("unregister " + std::to_string(ended.mapped().id.id));
}

std::vector<HandFedHotkeys::Registration> HandFedHotkeys::registered() const
{
    std::vector<Registration> list;
    for (const auto& [token, registration] : registrations)
        list.push_back(registration);
    return list;
}

void HandFedHotkeys::press(KeyCode keyCode, HotkeyModifiers modifiers)
{
    if (isForeign({keyCode, modifiers}))
        return;
    const auto newest =
        std::find_if(registrations.rbegin(), registrations.rend(), [&](const auto& entry) {
            return entry.second.combination == Combination(keyCode, modifiers);
        });
    if (newest == registrations.rend())
        return;
    dispatch.mainAsync([this, token = newest->first] {
        const auto pressed = registrations.find(token);
        const auto installed = handler;
        if (installed && pressed != registrations.end())
            (*installed)(pressed->second.id);
    });
}

void HandFedHotkeys::report(HotkeyId id)
{
    dispatch.mainAsync([mine = std::weak_ptr(handler), id] {
        if (const auto installed = mine.lock())
            (*installed)(id);
    });
}

Subscription HandFedHotkeys::watchForFreed(std::function<void()> told)
{
    freedHandler = std::make_shared<std::function<void()>>(std::move(told));
    return Subscription([this, mine = std::weak_ptr(freedHandler)] {
        if (freedHandler == mine.lock())
            freedHandler.reset();
    });
}

void HandFedHotkeys::takeElsewhere(KeyCode keyCode, HotkeyModifiers modifiers)
{
    foreign.emplace_back(keyCode, modifiers);
}

void HandFedHotkeys::giveBackElsewhere(KeyCode keyCode, HotkeyModifiers modifiers)
{
    std::erase(foreign, Combination(keyCode, modifiers));
}

void HandFedHotkeys::tellFreed()
{
    dispatch.mainAsync([this] {
        if (const auto told = freedHandler)
            (*told)();
    });
}

} // namespace tallowbay::headless
