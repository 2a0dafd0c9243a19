#include "platform/qt/graphics/QtTextMeasurer.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>

namespace tallowbay::qt {

namespace {

QFont::Weight qtWeight(FontWeight weight)
{
    switch (weight) {
    case FontWeight::regular:
        return QFont::Normal;
    case FontWeight::medium:
        return QFont::Medium;
    case FontWeight::semibold:
        return QFont::DemiBold;
    }
    return QFont::Normal;
}

} // namespace

Size QtTextMeasurer::measure(const std::string& text, const Font& font) const
{
    const QFontMetricsF metrics(interfaceFont(font));
    return {metrics.horizontalAdvance(QString::fromStdString(text)), metrics.height()};
}

QFont interfaceFont(const Font& font)
{
    QFont result = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    result.setFamilies({QStringLiteral("Inter"), result.family()});
    result.setPixelSize(qRound(font.sizePoints)); // a point is a device-independent pixel
    result.setWeight(qtWeight(font.weight));
    return result;
}

} // namespace tallowbay::qt
