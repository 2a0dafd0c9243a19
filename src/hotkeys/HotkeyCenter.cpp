#include "hotkeys/HotkeyCenter.h"

#include "platform/UserDefaults.h"

namespace tallowbay {

namespace {

// Also the order in which the combinations are given back.
constexpr std::array registrationOrder{
    HotkeyTarget::ocr, HotkeyTarget::openClose, HotkeyTarget::undoLast, HotkeyTarget::clearAll};

} // namespace

HotkeyCenter::HotkeyCenter(Hotkeys& hotkeys, UserDefaults& defaults, Actions actions)
    : hotkeys(hotkeys)
    , defaults(defaults)
    , actions(std::move(actions))
{
}

void HotkeyCenter::start()
{
    dispatcher = hotkeys.install([this](HotkeyId id) { dispatch(id); });
    for (const HotkeyTarget target : registrationOrder)
        registerHotkey(target, config(target));
}

void HotkeyCenter::stop()
{
    for (const HotkeyTarget target : registrationOrder)
        handleOf(target).reset();
}

HotkeyConfig HotkeyCenter::config(HotkeyTarget target) const
{
    const HotkeyTraits& traits = traitsOf(target);
    return HotkeyConfig::load(defaults, traits.defaultsKey, traits.defaultConfig);
}

void HotkeyCenter::updateHotkey(HotkeyTarget target, const HotkeyConfig& config)
{
    handleOf(target).reset();
    config.save(defaults, traitsOf(target).defaultsKey);
    registerHotkey(target, config);
}

void HotkeyCenter::resetHotkeysToDefault()
{
    for (const HotkeyTarget target : hotkeyTargets)
        updateHotkey(target, traitsOf(target).defaultConfig);
    for (const HotkeyTarget target : hotkeyTargets)
        defaults.remove(traitsOf(target).defaultsKey);
}

HotkeyCenter::Handle& HotkeyCenter::handleOf(HotkeyTarget target)
{
    switch (target) {
    case HotkeyTarget::openClose:
        return annotationHotKeyRef;
    case HotkeyTarget::ocr:
        return ocrHotKeyRef;
    case HotkeyTarget::undoLast:
        return undoLastHotKeyRef;
    case HotkeyTarget::clearAll:
        break;
    }
    return clearAllHotKeyRef;
}

void HotkeyCenter::registerHotkey(HotkeyTarget target, const HotkeyConfig& config)
{
    handleOf(target) =
        hotkeys.registerHotkey(config.keyCode, config.modifiers, traitsOf(target).id);
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
