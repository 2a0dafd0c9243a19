#include "platform/tesseract/LineImage.h"

#include "platform/tesseract/Resample.h"

#include <algorithm>
#include <cmath>

namespace tallowbay::tesseract {

namespace {

// All in heights of a small letter; found by measuring over many pictures.
constexpr double above = 1.55; // from the baseline to the top of the tallest letter
constexpr double below = 0.5; // from the baseline to the end of a tail
constexpr double widestGap = 1.6;
constexpr double sideMargin = 0.3;
constexpr int rowMargin = 2; // pixels
constexpr int height = 36; // of the picture, in pixels, as the engine wants it

int letters(const TextLine& line, double count)
{
    return static_cast<int>(std::lround(line.smallLetter * count));
}

Span rowsOf(const TextLine& line)
{
    return {
        std::min(line.rows.begin, line.baseline - letters(line, above)) - rowMargin,
        std::max(line.rows.end, line.baseline + letters(line, below)) + rowMargin};
}

// Where each run goes when wide gaps are drawn together.
std::vector<LineImage::Piece> placed(const TextLine& line)
{
    const int widest = std::max(3, letters(line, widestGap));
    std::vector<LineImage::Piece> pieces;
    int x = std::max(2, letters(line, sideMargin));
    for (std::size_t at = 0; at < line.runs.size(); ++at) {
        if (at > 0)
            x += std::min(widest, line.runs[at].begin - line.runs[at - 1].end);
        pieces.push_back({line.runs[at], x});
        x += line.runs[at].length();
    }
    return pieces;
}

// With the soft edges of a run, which reach one column further than its ink.
void copyRun(const Plane& ink, Span rows, const LineImage::Piece& piece, Plane& canvas)
{
    const int first = std::max(0, rows.begin);
    const int last = std::min(ink.size.height, rows.end);
    const int left = std::max(0, piece.source.begin - 1);
    const int right = std::min(ink.size.width, piece.source.end + 1);
    for (int y = first; y < last; ++y) {
        for (int x = left; x < right; ++x) {
            auto& target = canvas.row(y - rows.begin)[x - piece.source.begin + piece.begin];
            target = std::min<std::uint8_t>(target, 255 - ink.row(y)[x]);
        }
    }
}

} // namespace

LineImage makeLineImage(const Plane& ink, const TextLine& line)
{
    const Span rows = rowsOf(line);
    auto pieces = placed(line);
    const int width = pieces.back().begin + pieces.back().source.length() + pieces.front().begin;
    Plane canvas({width, rows.length()}, 255);
    for (const LineImage::Piece& piece : pieces)
        copyRun(ink, rows, piece, canvas);
    const double scale = static_cast<double>(height) / rows.length();
    const int scaled = std::max(1, static_cast<int>(std::lround(width * scale)));
    return {resampled(canvas, {scaled, height}), std::move(pieces), scale};
}

// Inside a gap that was drawn together the nearer run counts.
double LineImage::sourceColumn(double column) const
{
    const double x = column / scale;
    const auto next = std::find_if(
        pieces.begin() + 1, pieces.end(), [x](const Piece& piece) { return piece.begin > x; });
    const Piece& piece = *(next - 1);
    const double end = piece.begin + piece.source.length();
    if (next != pieces.end() && next->begin - x < x - end)
        return next->source.begin - (next->begin - x);
    return piece.source.begin + x - piece.begin;
}

} // namespace tallowbay::tesseract
