#include "platform/headless/HandFedKeys.h"

namespace tallowbay::headless {

std::optional<Subscription> HandFedKeyTap::start(Handler started)
{
    ++startCount;
    if (std::exchange(failStart, false))
        return std::nullopt;
    handler = std::move(started);
    return Subscription([this] { handler = nullptr; });
}

Subscription HandFedKeyTap::watchClicks(std::function<void()> clicked)
{
    onClick = std::move(clicked);
    return Subscription([this] { onClick = nullptr; });
}

void HandFedKeyTap::click() const
{
    if (const auto clicked = onClick)
        clicked();
}

void HandFedKeyTap::press(KeyCode keyCode, EventFlags flags)
{
    if (const auto tapped = handler)
        tapped({keyCode, flags});
}

void JournalKeyPoster::post(KeyCode keyCode, KeyDirection direction, EventFlags flags)
{
    journal.push_back({keyCode, direction, flags});
    if (onPost)
        onPost(journal.back());
}

} // namespace tallowbay::headless
