#include "hotkeys/HotkeyCenter.h"

#include "platform/Dispatch.h"
#include "platform/UserDefaults.h"

#include <algorithm>

namespace tallowbay {

namespace {

using namespace std::chrono_literals;

// Nobody tells when a program gives up a combination and runs on.
constexpr auto retryInterval = 10s;

// Also the order in which the combinations are given back.
constexpr std::array registrationOrder{
    HotkeyTarget::ocr, HotkeyTarget::openClose, HotkeyTarget::undoLast, HotkeyTarget::clearAll};

} // namespace

HotkeyCenter::HotkeyCenter(
    Dispatch& queue, Hotkeys& hotkeys, UserDefaults& defaults, Actions actions)
    : queue(queue)
    , hotkeys(hotkeys)
    , defaults(defaults)
    , actions(std::move(actions))
{
}

void HotkeyCenter::start()
{
    dispatcher = hotkeys.install([this](HotkeyId id) { dispatch(id); });
    for (const HotkeyTarget target : registrationOrder) {
        if (const auto stored = HotkeyConfig::stored(defaults, traitsOf(target).defaultsKey))
            registerHotkey(target, *stored);
        else
            registerDefault(target);
    }
    watchingForFreed = hotkeys.watchForFreed([this] { retryRefused(); });
    followRefusals();
}

void HotkeyCenter::stop()
{
    watchingForFreed.reset();
    retryTimer.reset();
    for (const HotkeyTarget target : registrationOrder)
        handleOf(target) = {};
}

HotkeyConfig HotkeyCenter::config(HotkeyTarget target) const
{
    const HotkeyTraits& traits = traitsOf(target);
    return HotkeyConfig::load(defaults, traits.defaultsKey, traits.defaultConfig);
}

std::optional<HotkeyConfig> HotkeyCenter::working(HotkeyTarget target) const
{
    return hotkeys.reaches(traitsOf(target).id) ? handleOf(target).config : std::nullopt;
}

void HotkeyCenter::updateHotkey(HotkeyTarget target, const HotkeyConfig& config)
{
    replace(target, config);
    retryDefaults();
    followRefusals();
}

void HotkeyCenter::replace(HotkeyTarget target, const HotkeyConfig& config)
{
    handleOf(target) = {};
    config.save(defaults, traitsOf(target).defaultsKey);
    giveUpSecondChoices(config);
    registerHotkey(target, config);
}

void HotkeyCenter::resetHotkeysToDefault()
{
    for (const HotkeyTarget target : hotkeyTargets)
        replace(target, traitsOf(target).defaultConfig);
    for (const HotkeyTarget target : hotkeyTargets)
        defaults.remove(traitsOf(target).defaultsKey);
    retryDefaults();
    followRefusals();
}

HotkeyCenter::Handle& HotkeyCenter::handleOf(HotkeyTarget target)
{
    return handles.at(static_cast<std::size_t>(target));
}

const HotkeyCenter::Handle& HotkeyCenter::handleOf(HotkeyTarget target) const
{
    return handles.at(static_cast<std::size_t>(target));
}

void HotkeyCenter::registerDefault(HotkeyTarget target)
{
    const HotkeyTraits& traits = traitsOf(target);
    if (registerHotkey(target, traits.defaultConfig) || !traits.secondChoice || working(target))
        return;
    if (!isWantedByAnother(target, *traits.secondChoice))
        registerHotkey(target, *traits.secondChoice);
}

// A second choice may have become free.
void HotkeyCenter::retryDefaults()
{
    for (const HotkeyTarget target : registrationOrder) {
        const bool isDefault = !HotkeyConfig::stored(defaults, traitsOf(target).defaultsKey);
        if (dispatcher && isDefault && !working(target))
            registerDefault(target);
    }
}

void HotkeyCenter::retryRefused()
{
    for (const HotkeyTarget target : registrationOrder) {
        if (!isRefused(target))
            continue;
        if (const auto stored = HotkeyConfig::stored(defaults, traitsOf(target).defaultsKey))
            registerHotkey(target, *stored);
        else
            registerDefault(target);
    }
    followRefusals();
}

void HotkeyCenter::followRefusals()
{
    if (!dispatcher
        || std::ranges::none_of(hotkeyTargets, [this](auto each) { return isRefused(each); }))
        retryTimer.reset();
    else if (!retryTimer)
        retryTimer = queue.repeatEvery(retryInterval, [this] { retryRefused(); });
}

bool HotkeyCenter::isRefused(HotkeyTarget target) const
{
    const auto inUse = working(target);
    return !inUse || !inUse->hasKeysOf(config(target));
}

// What worked before goes on working if this is refused.
bool HotkeyCenter::registerHotkey(HotkeyTarget target, const HotkeyConfig& config)
{
    auto registration =
        hotkeys.registerHotkey(config.keyCode, config.modifiers, traitsOf(target).id);
    if (!registration)
        return false;
    handleOf(target) = {std::move(registration), config};
    return true;
}

bool HotkeyCenter::isWantedByAnother(HotkeyTarget target, const HotkeyConfig& combination) const
{
    return std::ranges::any_of(hotkeyTargets, [&](HotkeyTarget other) {
        return other != target && config(other).hasKeysOf(combination);
    });
}

// Nobody asked for them; what the user records comes first.
void HotkeyCenter::giveUpSecondChoices(const HotkeyConfig& taken)
{
    for (const HotkeyTarget target : hotkeyTargets) {
        const auto inUse = handleOf(target).config;
        if (inUse && inUse->hasKeysOf(taken) && !inUse->hasKeysOf(config(target)))
            handleOf(target) = {};
    }
}

void HotkeyCenter::dispatch(HotkeyId pressed)
{
    if (isRecordingHotkey)
        return;
    if (const auto action = actionOf(pressed.id))
        action();
}

std::function<void()> HotkeyCenter::actionOf(std::uint32_t id) const
{
    switch (id) {
    case 1:
        return actions.triggerOCR;
    case 2:
        return actions.openAnnotationWindow;
    case 4:
        return actions.undoLastScreenshot;
    case 5:
        return actions.clearAllScreenshots;
    default:
        return nullptr;
    }
}

} // namespace tallowbay
