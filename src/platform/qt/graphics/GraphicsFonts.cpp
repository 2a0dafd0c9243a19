#include "platform/qt/graphics/GraphicsFonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>

#include <algorithm>

namespace tallowbay::qt {

namespace {

// All sizes are measured at this one, so that measures are exactly proportional to the size.
constexpr int referencePixels = 64;

// Glyphs are rendered near their real size; beyond these bounds they are scaled.
constexpr int smallestPixels = 8;
constexpr int largestPixels = 128;

QFont::Weight qtWeight(FontWeight weight)
{
    switch (weight) {
    case FontWeight::regular:
        return QFont::Normal;
    case FontWeight::medium:
        return QFont::Medium;
    case FontWeight::semibold:
        return QFont::DemiBold;
    case FontWeight::bold:
        break;
    }
    return QFont::Bold;
}

} // namespace

QFont interfaceFont(const Font& font)
{
    QFont result = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    result.setFamilies({QStringLiteral("Inter"), result.family()});
    result.setHintingPreference(QFont::PreferNoHinting);
    result.setPixelSize(qRound(font.sizePoints)); // a point is a device-independent pixel
    result.setWeight(qtWeight(font.weight));
    return result;
}

GraphicsFonts::GraphicsFonts()
    : base(interfaceFont({}))
{
}

QFont GraphicsFonts::reference(const Font& font) const
{
    QFont result = base;
    result.setPixelSize(referencePixels);
    result.setWeight(qtWeight(font.weight));
    return result;
}

Size GraphicsFonts::measure(const std::string& text, const Font& font) const
{
    return measures(text, font).box;
}

GraphicsFonts::Measures GraphicsFonts::measures(const std::string& text, const Font& font) const
{
    const QFontMetricsF metrics(reference(font));
    const double factor = font.sizePoints / referencePixels;
    Measures result{
        QString::fromStdString(text).split('\n'),
        {},
        metrics.ascent() * factor,
        metrics.height() * factor};
    double width = 0;
    for (const QString& line : result.lines)
        width = std::max(width, metrics.horizontalAdvance(line));
    result.box = {width * factor, result.lineHeight * static_cast<double>(result.lines.size())};
    return result;
}

GraphicsFonts::Scaled GraphicsFonts::scaled(const Font& font) const
{
    const double bounded = std::clamp<double>(font.sizePoints, smallestPixels, largestPixels);
    Scaled result{reference(font), 1};
    result.font.setPixelSize(qRound(bounded));
    result.factor = font.sizePoints / result.font.pixelSize();
    return result;
}

} // namespace tallowbay::qt
