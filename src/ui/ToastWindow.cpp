#include "ui/ToastWindow.h"

#include "platform/Dispatch.h"
#include "ui/Views.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tallowbay {

using namespace std::chrono_literals;

namespace {

constexpr Font toastFont{15, FontWeight::semibold};
constexpr double toastHeight = 48;
constexpr double cornerRadius = 12;

constexpr auto fadeInTime = 150ms;
constexpr auto holdTime = 800ms;
constexpr auto fadeOutTime = 300ms;

// So many toasts are on the screen at the same time whatever they cover.
constexpr int several = 4;

bool contains(const Rect& outer, const Rect& inner)
{
    return outer.minX() <= inner.minX() && outer.minY() <= inner.minY()
        && outer.maxX() >= inner.maxX() && outer.maxY() >= inner.maxY();
}

ToastContent makeContent(const Screens& screens, const TextMeasurer& measurer, std::string message)
{
    std::replace(message.begin(), message.end(), '\n', ' ');
    const double textWidth = measurer.measure(message, toastFont).width;
    return {
        std::move(message), toastFont, toastFrame(screens.mainFrame(), textWidth), cornerRadius,
        WindowLevel::statusBar};
}

} // namespace

Rect toastFrame(const std::optional<Rect>& mainScreen, double textWidth)
{
    const Rect screen = mainScreen.value_or(Rect{{0, 0}, {1440, 900}});
    const double width = std::clamp(textWidth + 48, 220.0, 480.0);
    return {{screen.midX() - width / 2, screen.midY() - toastHeight / 2}, {width, toastHeight}};
}

ToastWindow::ToastWindow(Dispatch& dispatch, Views& views, const ToastContent& content)
    : dispatch(dispatch)
    , place(content.frame)
    , window(views.makeToast(content))
{
}

void ToastWindow::fadeIn(std::function<void()> standing, std::function<void()> closed)
{
    onStanding = std::move(standing);
    onClosed = std::move(closed);
    fadingIn = true;
    window->setAlpha(0);
    window->orderFront();
    window->animateAlpha(1, fadeInTime, lifetime.guard([this] { stand(); }));
}

void ToastWindow::stand()
{
    fadingIn = false;
    dispatch.mainAfter(holdTime, lifetime.guard([this] { fadeOut(); }));
    const auto standing = onStanding; // on the stack: it may destroy this toast
    standing();
}

void ToastWindow::fadeOut()
{
    window->animateAlpha(0, fadeOutTime, lifetime.guard([this] {
        window->close();
        const auto closed = onClosed; // on the stack: it may destroy this toast
        closed();
    }));
}

ToastPresenter::ToastPresenter(
    Dispatch& dispatch, const Screens& screens, const TextMeasurer& measurer, Views& views)
    : dispatch(dispatch)
    , screens(screens)
    , measurer(measurer)
    , views(views)
{
}

void ToastPresenter::show(std::string message)
{
    dispatch.mainAsync(lifetime.guard([this, message = std::move(message)] { present(message); }));
}

void ToastPresenter::present(std::string message)
{
    const ToastContent content = makeContent(screens, measurer, std::move(message));
    if (begunLately < several && waiting.empty())
        begin(content);
    else
        wait(content);
}

void ToastPresenter::wait(ToastContent content)
{
    std::erase_if(
        waiting, [&](const ToastContent& older) { return contains(content.frame, older.frame); });
    waiting.push_back(std::move(content));
    showWaiting();
}

void ToastPresenter::showWaiting()
{
    if (waiting.empty() || (!active.empty() && active.back().isFadingIn()))
        return;
    closeCovered();
    for (const ToastContent& content : std::exchange(waiting, {}))
        begin(content);
}

void ToastPresenter::begin(const ToastContent& content)
{
    ++begunLately;
    dispatch.mainAfter(
        fadeInTime + holdTime + fadeOutTime, lifetime.guard([this] { --begunLately; }));
    active.emplace_back(dispatch, views, content);
    active.back().fadeIn(
        [this] { showWaiting(); },
        [this, toast = std::prev(active.end())] { active.erase(toast); });
}

void ToastPresenter::closeCovered()
{
    for (auto toast = active.begin(); toast != active.end();)
        toast = isCovered(toast) ? active.erase(toast) : std::next(toast);
}

// By two, since a single one lets something of what lies below it shine through.
bool ToastPresenter::isCovered(std::list<ToastWindow>::const_iterator toast) const
{
    return std::count_if(
               std::next(toast), active.end(),
               [&](const ToastWindow& newer) {
                   return !newer.isFadingIn() && contains(newer.frame(), toast->frame());
               })
        >= 2;
}

} // namespace tallowbay
