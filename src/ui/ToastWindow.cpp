#include "ui/ToastWindow.h"

#include "platform/Dispatch.h"
#include "ui/ToastContent.h"
#include "ui/Views.h"

#include <algorithm>

namespace tallowbay {

using namespace std::chrono_literals;

namespace {

constexpr Font toastFont{15, FontWeight::semibold};
constexpr double toastHeight = 48;
constexpr double cornerRadius = 12;

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

ToastWindow::ToastWindow(
    Dispatch& dispatch, const Screens& screens, const TextMeasurer& measurer, Views& views,
    std::string message)
    : dispatch(dispatch)
    , window(views.makeToast(makeContent(screens, measurer, std::move(message))))
{
}

void ToastWindow::fadeIn(std::function<void()> closed)
{
    onClosed = std::move(closed);
    window->setAlpha(0);
    window->orderFront();
    window->animateAlpha(1, 150ms, lifetime.guard([this] {
        dispatch.mainAfter(800ms, lifetime.guard([this] { fadeOut(); }));
    }));
}

void ToastWindow::fadeOut()
{
    window->animateAlpha(0, 300ms, lifetime.guard([this] {
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
    active.emplace_back(dispatch, screens, measurer, views, std::move(message));
    active.back().fadeIn([this, toast = std::prev(active.end())] { active.erase(toast); });
}

} // namespace tallowbay
