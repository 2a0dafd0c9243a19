#pragma once

#include <QImage>

namespace tallowbay::views {

// Three box blurs one after the other, which cannot be told from a Gaussian one of that deviation.
// The edges go on beyond the picture. An opaque picture.
QImage blurredImage(QImage, double deviationPixels);

} // namespace tallowbay::views
