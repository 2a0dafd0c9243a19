#pragma once

#include <QPainterPath>
#include <QRectF>

namespace tallowbay::views {

// A rectangle with round corners.
inline QPainterPath roundedPath(const QRectF& rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

// The upper part of a card with round corners, so many points high.
inline QPainterPath cardTopPath(const QRectF& card, double radius, double height)
{
    QPainterPath top;
    top.addRect(QRectF(card.topLeft(), QSizeF(card.width(), height)));
    return roundedPath(card, radius) & top;
}

// A rectangle of which only the lower corners are round.
inline QPainterPath cardBottomPath(const QRectF& rect, double radius)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addRoundedRect(rect, radius, radius);
    path.addRect(rect.adjusted(0, 0, 0, -radius));
    return path;
}

} // namespace tallowbay::views
