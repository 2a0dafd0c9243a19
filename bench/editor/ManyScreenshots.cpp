#include "ManyScreenshots.h"

#include "support/DesktopPicture.h"

#include <QImage>
#include <QPainter>

#include <nlohmann/json.hpp>

namespace tallowbay::bench {

namespace fs = std::filesystem;

namespace {

constexpr QSize screen(3840, 2160);
constexpr QRgb lineColors[] = {0xff0000, 0x008000, 0x0000ff, 0x00a0a0, 0xff00ff};
constexpr std::size_t checkedEvery = 50;

} // namespace

ManyScreenshots::ManyScreenshots(std::size_t count, int lineWidth)
    : number(count)
{
    fs::create_directories(place.optimized());
    for (std::size_t kind = 0; kind < lines.size(); ++kind)
        makePicture(kind, lineWidth);
    fillSession();
}

fs::path ManyScreenshots::picture(std::size_t index) const
{
    return place.folder() / ("picture" + std::to_string(index % lines.size()) + ".png");
}

void ManyScreenshots::makePicture(std::size_t kind, int lineWidth)
{
    QImage image(screen, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(QFont("DejaVu Sans Mono", 11));
    drawDesktop(painter, screen, int(kind));
    const QPoint middle = QRect(QPoint(), screen).center();
    painter.fillRect(QRect(middle - QPoint(200, 200), QSize(400, 400)), Qt::white);
    painter.fillRect(
        QRect(middle - QPoint(lineWidth / 2, 200), QSize(lineWidth, 400)),
        QColor::fromRgb(lineColors[kind]));
    painter.end();
    const fs::path original = place.folder() / "original.png";
    image.save(QString::fromStdString(original), "PNG", 90);
    barePngquant(original, picture(kind));
    lines[kind] = QImage(QString::fromStdString(picture(kind))).pixel(middle) & 0xffffff;
}

void ManyScreenshots::fillSession() const
{
    nlohmann::json items = nlohmann::json::array();
    for (std::size_t index = 0; index < number; ++index) {
        const fs::path copy =
            place.optimized() / ("Screenshot " + std::to_string(index + 1) + ".png");
        fs::create_hard_link(picture(index), copy);
        items.push_back({{"type", "image"}, {"url", copy}, {"checked", index % checkedEvery == 0}});
    }
    test::writeFile(
        place.optimized().parent_path() / "session.json", nlohmann::json{{"items", items}}.dump());
}

} // namespace tallowbay::bench
