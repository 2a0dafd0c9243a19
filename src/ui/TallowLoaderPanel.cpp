#include "ui/TallowLoaderPanel.h"

#include "platform/Screens.h"
#include "ui/LoaderPort.h"
#include "ui/Views.h"

#include <algorithm>
#include <optional>

namespace tallowbay {

using namespace std::chrono_literals;

namespace {

bool isInside(Point point, const Rect& frame)
{
    return frame.minX() <= point.x && point.x < frame.maxX() && frame.minY() <= point.y
        && point.y < frame.maxY();
}

std::optional<Rect> activeScreen(const Screens& screens)
{
    const auto frames = screens.frames();
    if (const auto pointer = screens.pointer()) {
        const auto under = std::ranges::find_if(
            frames, [&](const Rect& frame) { return isInside(*pointer, frame); });
        if (under != frames.end())
            return *under;
    }
    if (const auto main = screens.mainFrame())
        return main;
    return frames.empty() ? std::nullopt : std::optional(frames.front());
}

} // namespace

TallowLoaderPanel::TallowLoaderPanel(const Screens& screens, Views& views)
    : screens(screens)
    , window(views.makeLoader(*this))
{
}

TallowLoaderPanel::~TallowLoaderPanel() = default;

void TallowLoaderPanel::centerOnActiveScreen()
{
    if (const auto screen = activeScreen(screens))
        window->setOrigin({screen->midX() - size.width * 0.5, screen->midY() - size.height * 0.5});
}

void TallowLoaderPanel::orderFront()
{
    window->setAlpha(1);
    window->orderFront();
}

void TallowLoaderPanel::startPulse()
{
    window->startPulse();
}

void TallowLoaderPanel::fadeOut(std::function<void()> completion)
{
    window->stopPulse();
    window->animateAlpha(0, 150ms, [this, completion = std::move(completion)] {
        window->close();
        const auto completed = completion; // on the stack: it may destroy this panel
        if (completed)
            completed();
    });
}

} // namespace tallowbay
