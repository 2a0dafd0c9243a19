#include "app/PasteWatcher.h"

#include "platform/Console.h"
#include "platform/Dispatch.h"
#include "platform/KeyPoster.h"
#include "platform/KeyTap.h"
#include "platform/Permissions.h"

namespace tallowbay {

using namespace std::chrono_literals;

PasteWatcher::PasteWatcher(const Platform& platform, std::function<void()> onPaste)
    : platform(platform)
    , onPaste(std::move(onPaste))
{
}

void PasteWatcher::startPasteWatcher()
{
    if (platform.permissions.accessibility().granted()) {
        startEventTap();
        return;
    }
    accessibilityPollTimer = platform.dispatch.repeatEvery(2s, [this] {
        if (!platform.permissions.accessibility().granted())
            return;
        accessibilityPollTimer.reset();
        startEventTap();
    });
}

void PasteWatcher::startEventTap()
{
    eventTap = platform.keyTap.start([this](const KeyPress& press) { tapped(press); });
    platform.console.line(
        eventTap ? "Paste watcher running (Cmd+V resets batch)"
                 : "CGEventTap creation failed — paste detection unavailable");
}

// Runs on the tap's thread. Shift and Option do not matter: every variant of the shortcut pastes.
void PasteWatcher::tapped(const KeyPress& press)
{
    if (tellsOfKeys)
        platform.dispatch.mainAsync(lifetime.guard([this] { onKey(); }));
    if (press.keyCode == keyCode::v && (press.flags & eventFlag::command))
        platform.dispatch.mainAsync(lifetime.guard([this] { onPaste(); }));
}

void PasteWatcher::firePaste()
{
    platform.keyPoster.post(keyCode::v, KeyDirection::down, eventFlag::command);
    platform.keyPoster.post(keyCode::v, KeyDirection::up, eventFlag::command);
}

} // namespace tallowbay
