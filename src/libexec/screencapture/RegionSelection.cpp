#include "libexec/screencapture/RegionSelection.h"

#include <algorithm>
#include <utility>

namespace tallowbay::screencapture {

namespace {

constexpr int smallestSide = 2;
constexpr int coarseStep = 10;

QPoint clamped(QPoint point, const QRect& area)
{
    return {
        std::clamp(point.x(), area.left(), area.right()),
        std::clamp(point.y(), area.top(), area.bottom())};
}

QPoint nearestOn(const std::vector<QRect>& screens, QPoint point)
{
    const auto distance = [point](const QRect& screen) {
        return (clamped(point, screen) - point).manhattanLength();
    };
    return clamped(point, *std::ranges::min_element(screens, {}, distance));
}

QPoint direction(RegionSelection::Key key)
{
    switch (key) {
    case RegionSelection::Key::Left:
        return {-1, 0};
    case RegionSelection::Key::Right:
        return {1, 0};
    case RegionSelection::Key::Up:
        return {0, -1};
    case RegionSelection::Key::Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

RegionSelection::RegionSelection(std::vector<QRect> screens, QPoint pointer)
    : screens(std::move(screens))
    , at(nearestOn(this->screens, pointer))
{
}

void RegionSelection::moveTo(QPoint point)
{
    at = nearestOn(screens, point);
}

void RegionSelection::pointerMoved(QPoint point)
{
    if (!ended())
        moveTo(point);
}

void RegionSelection::primaryPressed(QPoint point)
{
    if (ended())
        return;
    moveTo(point);
    begun = Begun{at, Device::Mouse};
}

void RegionSelection::primaryReleased(QPoint point)
{
    if (ended() || !begun || begun->device != Device::Mouse)
        return;
    moveTo(point);
    end();
}

void RegionSelection::secondaryPressed()
{
    if (!ended())
        isCancelled = true;
}

void RegionSelection::keyPressed(Key key, Step step)
{
    if (ended())
        return;
    if (key == Key::Cancel)
        isCancelled = true;
    else if (key == Key::Confirm)
        confirmByKey();
    else
        moveTo(at + direction(key) * (step == Step::Coarse ? coarseStep : 1));
}

// While the mouse button is down, its release ends the region: it would go to the window below
// otherwise.
void RegionSelection::confirmByKey()
{
    if (!begun)
        begun = Begun{at, Device::Keyboard};
    else if (begun->device == Device::Keyboard)
        end();
}

void RegionSelection::end()
{
    const QSize size = region()->size();
    isConfirmed = size.width() >= smallestSide && size.height() >= smallestSide;
    if (!isConfirmed)
        begun.reset();
}

std::optional<QRect> RegionSelection::region() const
{
    if (!begun)
        return std::nullopt;
    const auto [left, right] = std::minmax({begun->anchor.x(), at.x()});
    const auto [top, bottom] = std::minmax({begun->anchor.y(), at.y()});
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

QRect labelPlace(const QRect& region, QSize label, const QRect& screen, int gap)
{
    const QRect visible = region.intersected(screen);
    const int below = visible.bottom() + 1 + gap;
    const int above = visible.top() - gap - label.height();
    QRect place({visible.right() + 1 - label.width(), below}, label);
    if (place.bottom() > screen.bottom() - gap)
        place.moveTop(above);
    if (place.top() < screen.top() + gap) {
        place.moveBottom(visible.bottom() - gap);
        place.moveRight(visible.right() - gap);
    }
    place.moveLeft(std::max(place.left(), screen.left() + gap));
    place.moveTop(std::max(place.top(), screen.top() + gap));
    return place;
}

} // namespace tallowbay::screencapture
