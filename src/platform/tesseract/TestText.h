#pragma once

#include "base/Bitmap.h"

#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <string>
#include <vector>

namespace tallowbay::tesseract {

// Text as a program would show it, for tests. One for the whole process.
class TextDrawing {
public:
    struct Look {
        const char* typeface = "DejaVu Sans";
        int pixels = 13;
        QRgb foreground = 0xFF000000u;
        QRgb background = 0xFFFFFFFFu;
    };

    // As editors and terminals have it.
    static Look greyOnDark(const char* typeface, int pixels)
    {
        return {typeface, pixels, 0xFFD4D4D4u, 0xFF1E1E1Eu};
    }

    static Image draw(const std::vector<std::string>& lines) { return draw(lines, Look()); }
    static Image draw(const std::vector<std::string>& lines, const Look& look)
    {
        QImage picture(600, 20 + 24 * static_cast<int>(lines.size()), QImage::Format_RGB32);
        picture.fill(look.background);
        drawInto(picture, lines, look, 10);
        return bitmapOf(picture);
    }

    static void drawInto(
        QImage& picture, const std::vector<std::string>& lines, const Look& look, int top)
    {
        needGui();
        QFont font(look.typeface);
        font.setPixelSize(look.pixels);
        QPainter painter(&picture);
        painter.setFont(font);
        painter.setPen(QColor(look.foreground));
        for (std::size_t at = 0; at < lines.size(); ++at)
            painter.drawText(
                12, top + 16 + 24 * static_cast<int>(at), QString::fromStdString(lines[at]));
    }

    static Image bitmapOf(const QImage& picture)
    {
        auto bitmap = std::make_shared<Bitmap>(PixelSize{picture.width(), picture.height()});
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                bitmap->row(y)[x] = picture.pixel(x, y) | 0xFF000000u;
        }
        return bitmap;
    }

private:
    static void needGui()
    {
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static const QGuiApplication application(count, arguments);
    }
};

} // namespace tallowbay::tesseract
