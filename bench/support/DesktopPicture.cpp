#include "support/DesktopPicture.h"

#include "desktop/support/ChildProcess.h"
#include "support/Measures.h"

#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tallowbay::bench {

void drawDesktop(QPainter& painter, const QSize& size, int number)
{
    QLinearGradient sky(0, 0, size.width(), size.height());
    sky.setColorAt(0, QColor::fromHsv((number * 37) % 360, 120, 160));
    sky.setColorAt(1, QColor(24, 28, 46));
    painter.fillRect(QRect(QPoint(), size), sky);
    for (int window = 0; window < 3; ++window) {
        const QRect frame(
            80 + window * size.width() / 4, 60 + window * 90, size.width() / 2,
            size.height() * 2 / 3);
        painter.fillRect(frame, window % 2 ? QColor(250, 250, 252) : QColor(30, 32, 38));
        painter.setPen(window % 2 ? QColor(40, 42, 50) : QColor(205, 208, 216));
        for (int row = 0; row < frame.height() / 22 - 1; ++row)
            painter.drawText(
                frame.left() + 20, frame.top() + 30 + row * 22,
                QString("%1  value_%2 = compute(%3, \"shot %4\");")
                    .arg(row)
                    .arg(row * 7919 % 1000)
                    .arg(row * 104729 % 10000)
                    .arg(number));
    }
}

std::string screenshotOf(const QSize& size, int number)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(QFont("DejaVu Sans Mono", 11));
    drawDesktop(painter, size, number);
    painter.end();
    QTemporaryDir folder;
    const QString path = folder.filePath("a.png");
    image.save(path, "PNG");
    std::ifstream file(path.toStdString(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

double barePngquant(const std::filesystem::path& input, const std::filesystem::path& output)
{
    const auto start = Steady::now();
    test::ChildProcess tool(
        {"pngquant", "--quality=50-70", "--speed=10", "--output", output, "--force", input}, {});
    if (tool.wait() != 0)
        throw std::runtime_error("pngquant failed");
    return millisecondsSince(start);
}

} // namespace tallowbay::bench
