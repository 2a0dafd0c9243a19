#pragma once

#include "platform/Graphics.h"
#include "platform/OffscreenGraphics.h"

#include <mutex>
#include <string>
#include <vector>

namespace tallowbay::headless {

// Draws nothing and writes down every call, one line each, so that a test can compare geometry,
// colours, widths and order:
//
//   fill rect(10 20 30 40) color(1 0.8 0 0.35)
//   stroke oval(5 5 10 10) color(0 0.478 1 1) width 1.5
//   image 320x200 rect(0 0 640 400)
//   text "abc" at(1 2) size 16 semibold color(1 1 1 1) background(0 0 0 0.6)
//
// Numbers carry six significant digits.
class RecordingGraphics final : public GraphicsContext {
public:
    void setCompositingOperation(CompositingOperation) override;
    CompositingOperation compositingOperation() const override { return operation; }
    void fill(const Shape&, Color) override;
    void stroke(const Shape&, Color, const StrokeStyle&) override;
    void drawImage(const Image&, const Rect&) override;
    void drawText(const std::string& text, const Point& origin, const TextStyle&) override;

    std::vector<std::string> lines;

private:
    CompositingOperation operation = CompositingOperation::sourceOver;
};

// Hands out recording contexts; the bitmaps stay transparent, but for their first pixel, which
// counts the drawings, so that one can be told from another.
class RecordingOffscreenGraphics final : public OffscreenGraphics {
public:
    struct Record {
        PixelSize size;
        double pixelsPerUnit = 1;
        std::vector<std::string> lines;
    };

    std::optional<Bitmap> draw(PixelSize, double pixelsPerUnit, const Drawing&) const override;

    std::vector<Record> drawings() const;
    void failNextDraw() { failNext = true; }

private:
    mutable std::mutex mutex;
    mutable std::vector<Record> records;
    mutable bool failNext = false;
};

} // namespace tallowbay::headless
