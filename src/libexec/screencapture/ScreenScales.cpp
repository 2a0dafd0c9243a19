#include "libexec/screencapture/ScreenScales.h"

#include <QStringList>

#include <algorithm>
#include <optional>

namespace tallowbay::screencapture {

namespace {

std::optional<double> factor(const QString& text)
{
    bool isNumber = false;
    const double value = text.trimmed().toDouble(&isNumber);
    return isNumber && value > 0 ? std::optional(value) : std::nullopt;
}

QString taken(const char* name)
{
    const QString value = qEnvironmentVariable(name);
    qunsetenv(name);
    return value;
}

// One setting of the list: "NAME=FACTOR", or "FACTOR" for the screen of that place in the list.
std::optional<double> listed(const QString& setting, const QString& name, bool samePlace)
{
    const auto equals = setting.lastIndexOf('=');
    if (equals < 0)
        return samePlace ? factor(setting) : std::nullopt;
    return setting.left(equals).trimmed() == name ? factor(setting.mid(equals + 1)) : std::nullopt;
}

} // namespace

ScreenScales ScreenScales::takenFromQt()
{
    const QString everywhere = taken("QT_SCALE_FACTOR");
    const QString byScreen = taken("QT_SCREEN_SCALE_FACTORS");
    qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
    return {everywhere, byScreen};
}

ScreenScales::ScreenScales(const QString& everywhere, const QString& byScreen)
    : everywhere(factor(everywhere).value_or(1))
    , byScreen(byScreen)
{
}

double ScreenScales::of(const QString& screenName, int index, double dotsPerInch) const
{
    const QStringList settings = byScreen.split(';');
    for (int i = 0; i < settings.size(); ++i) {
        if (const auto own = listed(settings[i], screenName, i == index))
            return std::max(1.0, *own * everywhere);
    }
    return std::max(1.0, fromDots(dotsPerInch) * everywhere);
}

double ScreenScales::fromDots(double dotsPerInch) const
{
    return std::max(1.0, dotsPerInch / 96);
}

} // namespace tallowbay::screencapture
