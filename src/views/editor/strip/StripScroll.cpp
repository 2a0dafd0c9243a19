#include "views/editor/strip/StripScroll.h"

#include <QWidget>

#include <algorithm>
#include <cmath>

namespace tallowbay::views {

namespace {

constexpr int glideMilliseconds = 260;
constexpr double coasting = 160; // ms for which the speed of a drag would go on
constexpr int touchpadRestMilliseconds = 100; // from its last move on, the hand rests

// How far it gives, where it is pulled so far beyond its end: less and less.
double stretched(double pull, double span)
{
    constexpr double softness = 0.55;
    const double way = span * (1 - 1 / (std::abs(pull) * softness / span + 1));
    return pull < 0 ? -way : way;
}

} // namespace

StripScroll::StripScroll(
    QWidget& view, QWidget& content, OverlayScroller& scroller, std::function<void()> whenMoved)
    : view(view)
    , content(content)
    , scroller(scroller)
    , whenMoved(std::move(whenMoved))
{
    scroller.onScrolled = [this](double to) {
        glide.stop();
        scrollTo(to);
    };
    glide.setDuration(glideMilliseconds);
    glide.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(
        &glide, &QVariantAnimation::valueChanged, &glide,
        [this](const QVariant& value) { moveTo(value.toDouble()); });
    touchpadRest.setSingleShot(true);
    touchpadRest.setInterval(touchpadRestMilliseconds);
    QObject::connect(&touchpadRest, &QTimer::timeout, &touchpadRest, [this] { snapBack(); });
}

double StripScroll::furthest() const
{
    return std::max(0, content.width() - view.width());
}

double StripScroll::within(double to) const
{
    return std::clamp(to, 0.0, furthest());
}

void StripScroll::moveTo(double to)
{
    place = to;
    content.move(-qRound(place), 0);
    scroller.setView(within(place), view.width(), content.width());
    whenMoved();
}

void StripScroll::scrollTo(double to)
{
    moveTo(within(to));
}

void StripScroll::contentChanged()
{
    scrollTo(place);
    if (restingOffset() > furthest())
        glideTo(restingOffset());
}

// Beyond its ends it gives, like a rubber band, if there is anything to scroll.
void StripScroll::pullTo(double to)
{
    const double end = within(to);
    moveTo(furthest() > 0 ? end + stretched(to - end, view.width()) : end);
}

void StripScroll::snapBack()
{
    if (place != within(place))
        glideTo(place);
}

void StripScroll::glideTo(double to)
{
    const double end = within(to);
    glide.stop();
    if (!view.isVisible())
        return scrollTo(end);
    if (end == place)
        return;
    scroller.flash();
    glide.setStartValue(place);
    glide.setEndValue(end);
    glide.start();
}

void StripScroll::finish()
{
    if (glide.state() != QVariantAnimation::Running)
        return;
    glide.stop();
    scrollTo(glide.endValue().toDouble());
}

double StripScroll::restingOffset() const
{
    const bool glides = glide.state() == QVariantAnimation::Running;
    return glides ? glide.endValue().toDouble() : place;
}

void StripScroll::showSpan(double left, double right)
{
    const double now = restingOffset();
    if (left < now)
        glideTo(left);
    else if (right > now + view.width())
        glideTo(right - view.width());
}

void StripScroll::turn(double way)
{
    glideTo(restingOffset() + way);
}

void StripScroll::touchpadMoved(double way)
{
    glide.stop();
    touchpadOffset = way + (touchpadRest.isActive() ? touchpadOffset : place);
    touchpadOffset = std::clamp(touchpadOffset, -double(view.width()), furthest() + view.width());
    touchpadRest.start();
    pullTo(touchpadOffset);
    scroller.flash();
}

void StripScroll::grab(double x)
{
    glide.stop();
    grabbedAt = lastX = x;
    offsetAtGrab = place;
    velocity = 0;
    sinceMove.start();
}

void StripScroll::dragTo(double x)
{
    const double elapsed = double(sinceMove.restart());
    if (elapsed > 0)
        velocity = 0.6 * velocity + 0.4 * (lastX - x) / elapsed;
    lastX = x;
    pullTo(offsetAtGrab + grabbedAt - x);
    scroller.flash();
}

void StripScroll::letGo()
{
    constexpr int stood = 80; // ms after which the hand rests
    if (place != within(place))
        snapBack();
    else if (sinceMove.elapsed() < stood)
        glideTo(place + velocity * coasting);
}

} // namespace tallowbay::views
