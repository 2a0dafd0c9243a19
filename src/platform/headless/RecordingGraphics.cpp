#include "platform/headless/RecordingGraphics.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace tallowbay::headless {

namespace {

// Adding zero turns the negative zero into the usual one.
std::ostream& number(std::ostream& out, double value)
{
    return out << value + 0.0;
}

std::ostream& operator<<(std::ostream& out, const Point& point)
{
    return number(number(out, point.x) << ' ', point.y);
}

std::ostream& operator<<(std::ostream& out, const Rect& rect)
{
    out << rect.origin << ' ';
    return number(number(out, rect.size.width) << ' ', rect.size.height);
}

std::ostream& operator<<(std::ostream& out, const Color& color)
{
    number(number(out << '(', color.red) << ' ', color.green) << ' ';
    return number(number(out, color.blue) << ' ', color.alpha) << ')';
}

struct ShapePrinter {
    std::ostream& out;

    void operator()(const Rect& rect) const { out << "rect(" << rect << ')'; }
    void operator()(const RoundedRect& rounded) const
    {
        number(out << "roundedRect(" << rounded.rect << " radius ", rounded.radius) << ')';
    }
    void operator()(const Oval& oval) const { out << "oval(" << oval.rect << ')'; }
    void operator()(const Polyline& line) const
    {
        out << (line.closed ? "polygon(" : "line(");
        for (std::size_t index = 0; index < line.points.size(); ++index)
            out << (index ? ", " : "") << line.points[index];
        out << ')';
    }
};

const char* nameOf(FontWeight weight)
{
    switch (weight) {
    case FontWeight::regular:
        return "regular";
    case FontWeight::medium:
        return "medium";
    case FontWeight::semibold:
        return "semibold";
    case FontWeight::bold:
        break;
    }
    return "bold";
}

std::ostringstream begin(const char* verb, const Shape& shape)
{
    std::ostringstream out;
    out << verb << ' ';
    std::visit(ShapePrinter{out}, shape);
    return out;
}

} // namespace

void RecordingGraphics::setCompositingOperation(CompositingOperation wanted)
{
    operation = wanted;
    lines.emplace_back(
        wanted == CompositingOperation::copy ? "compositing copy" : "compositing sourceOver");
}

void RecordingGraphics::fill(const Shape& shape, Color color)
{
    auto out = begin("fill", shape);
    out << " color" << color;
    lines.push_back(out.str());
}

void RecordingGraphics::stroke(const Shape& shape, Color color, const StrokeStyle& style)
{
    auto out = begin("stroke", shape);
    number(out << " color" << color << " width ", style.width);
    out << (style.cap == LineCap::round ? " round" : "");
    lines.push_back(out.str());
}

void RecordingGraphics::drawImage(const Image& image, const Rect& rect)
{
    if (!image)
        return;
    std::ostringstream out;
    out << "image " << image->size().width << 'x' << image->size().height << ' ';
    ShapePrinter{out}(rect);
    lines.push_back(out.str());
}

void RecordingGraphics::drawText(
    const std::string& text, const Point& origin, const TextStyle& style)
{
    std::ostringstream out;
    out << "text \"" << text << "\" at(" << origin << ") size ";
    number(out, style.font.sizePoints) << ' ' << nameOf(style.font.weight);
    out << " color" << style.foreground;
    if (style.background)
        out << " background" << *style.background;
    lines.push_back(out.str());
}

std::optional<Bitmap> RecordingOffscreenGraphics::draw(
    PixelSize size, double pixelsPerUnit, const Drawing& drawing) const
{
    const std::lock_guard lock(mutex);
    if (std::exchange(failNext, false) || std::min(size.width, size.height) < 1
        || std::max(size.width, size.height) > offscreenLimit)
        return std::nullopt;
    RecordingGraphics context;
    drawing(context);
    records.push_back({size, pixelsPerUnit, std::move(context.lines)});
    Bitmap bitmap(size);
    bitmap.row(0)[0] = 0xFF000000u | static_cast<std::uint32_t>(records.size());
    return bitmap;
}

std::vector<RecordingOffscreenGraphics::Record> RecordingOffscreenGraphics::drawings() const
{
    const std::lock_guard lock(mutex);
    return records;
}

} // namespace tallowbay::headless
