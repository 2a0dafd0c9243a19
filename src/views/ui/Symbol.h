#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

namespace tallowbay::views {

// A symbol of the interface, such as "eye.slash", in one colour and sharp at any scale, as large as
// a text of that size needs it: its square is a fifth larger. A name that there is no drawing of
// gives a null picture.
QPixmap symbol(const QString& name, double textSize, const QColor&, double pixelsPerPoint);

} // namespace tallowbay::views
