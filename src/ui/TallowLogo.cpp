#include "ui/TallowLogo.h"

#include "platform/Graphics.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tallowbay {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr Seconds blinkClose{0.28};
constexpr Seconds blinkOpen{0.42};
constexpr Seconds blinkEnd{0.7};

// Of the mark's square of 512 units.
constexpr double designSide = 512;
constexpr double leftEye = 215;
constexpr double rightEye = 275;
constexpr double gazeCenter = 245;
constexpr double eyeLine = 0.5703125; // of the height
constexpr Size eyeHalf{14, 18};
constexpr Size pupilHalf{7, 9};

constexpr double gazeReach = 280; // points, from which on the pupils look aside as far as they can
constexpr double easing = 0.1; // of the way, in one tick

constexpr Color eyeWhite{220 / 255.0, 218 / 255.0, 1, 0.75};
constexpr Color pupilColor{30 / 255.0, 27 / 255.0, 75 / 255.0};
constexpr Color lidColor{91 / 255.0, 95 / 255.0, 1, 0.92};

MonotonicTime later(MonotonicTime moment, double seconds)
{
    return moment + std::chrono::duration_cast<MonotonicTime::duration>(Seconds(seconds));
}

Rect around(Point center, Size half)
{
    return {{center.x - half.width, center.y - half.height}, {half.width * 2, half.height * 2}};
}

// What of an oval lies above a height.
Polyline upperPart(const Rect& oval, double lowest)
{
    constexpr int corners = 48; // finer than a pixel shows
    const double sine = std::clamp((lowest - oval.midY()) / (oval.size.height / 2), -1.0, 1.0);
    const double from = std::asin(sine);
    const double to = std::numbers::pi - from;
    Polyline part{{}, true};
    for (int corner = 0; corner <= corners; ++corner) {
        const double angle = from + (to - from) * corner / corners;
        part.points.push_back(
            {oval.midX() + std::cos(angle) * oval.size.width / 2,
             oval.midY() + std::sin(angle) * oval.size.height / 2});
    }
    return part;
}

} // namespace

TallowLogo::TallowLogo(MonotonicTime now, std::function<double()> random, Image icon)
    : random(std::move(random))
    , icon(std::move(icon))
    , nextBlinkAt(later(now, 1.8 + this->random() * 2))
{
}

void TallowLogo::tick(MonotonicTime now, Size size, std::optional<Point> mouse)
{
    tickBlink(now);
    tickGaze(size, mouse);
}

void TallowLogo::tickBlink(MonotonicTime now)
{
    if (now < nextBlinkAt)
        return;
    if (!blinkStart)
        blinkStart = now;
    const Seconds elapsed = now - *blinkStart;
    if (elapsed >= blinkEnd) {
        blinkStart.reset();
        blink = 0;
        nextBlinkAt = later(now, 2.5 + random() * 3.5);
    } else if (elapsed >= blinkClose) {
        blink = 1 - (elapsed - blinkClose) / blinkOpen;
    } else {
        blink = elapsed / blinkClose;
    }
}

void TallowLogo::tickGaze(Size size, const std::optional<Point>& mouse)
{
    const double scale = size.width / designSide;
    Point target;
    if (mouse) {
        const double dx = mouse->x - gazeCenter * scale;
        const double dy = mouse->y - eyeLine * size.height;
        const double distance = std::hypot(dx, dy);
        if (distance > 0) {
            const double aside = std::min(distance / gazeReach, 1.0) / distance;
            // Both by the width, also where the eyes themselves are drawn by the height.
            target = {
                pupilHalf.width * scale * 0.55 * dx * aside,
                pupilHalf.height * scale * 0.45 * dy * aside};
        }
    }
    offset.x += (target.x - offset.x) * easing;
    offset.y += (target.y - offset.y) * easing;
}

void TallowLogo::draw(GraphicsContext& context, Size size) const
{
    context.drawImage(icon, {{0, 0}, size});
    for (const double eye : {leftEye, rightEye})
        drawEye(context, {eye * size.width / designSide, eyeLine * size.height}, size);
}

void TallowLogo::drawEye(GraphicsContext& context, Point center, Size size) const
{
    const double across = size.width / designSide;
    const double up = size.height / designSide;
    const Rect eye = around(center, {eyeHalf.width * across, eyeHalf.height * up});
    context.fill(Oval{eye}, eyeWhite);
    const Point pupil{center.x + offset.x, center.y + offset.y};
    context.fill(
        Oval{around(pupil, {pupilHalf.width * across, pupilHalf.height * up})}, pupilColor);
    const double down = easedBlink(blink);
    if (down > 0) // two points more than the eye's height, so that nothing of it stays open
        context.fill(upperPart(eye, eye.maxY() - (eye.size.height + 2) * down), lidColor);
}

double easedBlink(double progress)
{
    if (progress < 0.5)
        return 2 * progress * progress;
    const double left = 2 - 2 * progress;
    return 1 - left * left / 2;
}

} // namespace tallowbay
