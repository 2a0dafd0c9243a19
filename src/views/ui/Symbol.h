#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

namespace tallowbay::views {

// A symbol of the interface, such as "eye.slash", in one colour and sharp at any scale. A name that
// there is no drawing of gives a null picture.
QPixmap symbol(const QString& name, int sidePoints, const QColor&, double pixelsPerPoint);

} // namespace tallowbay::views
