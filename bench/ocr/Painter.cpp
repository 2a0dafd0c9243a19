#include "Painter.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <stdexcept>

#include <pango/pangocairo.h>

namespace tallowbay::bench {

namespace {

struct Release {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_font_options_t* options) const { cairo_font_options_destroy(options); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
};
template <typename T> using Owned = std::unique_ptr<T, Release>;

void setColour(cairo_t* cairo, Colour colour)
{
    cairo_set_source_rgb(
        cairo, (colour >> 16 & 255) / 255.0, (colour >> 8 & 255) / 255.0, (colour & 255) / 255.0);
}

Owned<cairo_font_options_t> fontOptions(const Sample& sample)
{
    Owned<cairo_font_options_t> options(cairo_font_options_create());
    cairo_font_options_set_antialias(
        options.get(),
        sample.antialiasing == Antialiasing::subpixel ? CAIRO_ANTIALIAS_SUBPIXEL
                                                      : CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_subpixel_order(options.get(), CAIRO_SUBPIXEL_ORDER_RGB);
    cairo_font_options_set_hint_style(
        options.get(),
        sample.hinting == Hinting::none         ? CAIRO_HINT_STYLE_NONE
            : sample.hinting == Hinting::slight ? CAIRO_HINT_STYLE_SLIGHT
                                                : CAIRO_HINT_STYLE_FULL);
    cairo_font_options_set_hint_metrics(
        options.get(),
        sample.hinting == Hinting::none ? CAIRO_HINT_METRICS_OFF : CAIRO_HINT_METRICS_ON);
    return options;
}

// A surface and what is needed to write on it as one desktop's settings would.
class Canvas {
public:
    Canvas(const Sample& sample, PictureSize size)
        : surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height))
        , cairo(cairo_create(surface.get()))
        , font(pango_font_description_new())
    {
        pango_font_description_set_family(font.get(), sample.typeface.c_str());
        pango_font_description_set_absolute_size(font.get(), sample.textPixels * PANGO_SCALE);
        cairo_set_font_options(cairo.get(), fontOptions(sample).get());
    }

    Owned<PangoLayout> layout(const Piece& piece) const
    {
        Owned<PangoLayout> made(pango_cairo_create_layout(cairo.get()));
        pango_layout_set_font_description(made.get(), font.get());
        pango_layout_set_text(made.get(), piece.text.c_str(), -1);
        const Owned<PangoAttrList> attributes(pango_attr_list_new());
        if (piece.bold)
            pango_attr_list_insert(attributes.get(), pango_attr_weight_new(PANGO_WEIGHT_BOLD));
        if (piece.underlined)
            pango_attr_list_insert(
                attributes.get(), pango_attr_underline_new(PANGO_UNDERLINE_SINGLE));
        pango_layout_set_attributes(made.get(), attributes.get());
        return made;
    }

    PictureSize extent(const Piece& piece) const
    {
        PictureSize size{};
        pango_layout_get_pixel_size(layout(piece).get(), &size.width, &size.height);
        return size;
    }

    void fill(Colour colour, double top, double height)
    {
        setColour(cairo.get(), colour);
        cairo_rectangle(cairo.get(), 0, top, 1e5, height);
        cairo_fill(cairo.get());
    }

    void write(const Piece& piece, Colour colour, double x, double y)
    {
        setColour(cairo.get(), colour);
        cairo_move_to(cairo.get(), x, y);
        pango_cairo_show_layout(cairo.get(), layout(piece).get());
    }

    void save(const std::filesystem::path& file)
    {
        cairo_surface_flush(surface.get());
        if (cairo_surface_write_to_png(surface.get(), file.c_str()) != CAIRO_STATUS_SUCCESS)
            throw std::runtime_error("cannot write " + file.string());
    }

private:
    Owned<cairo_surface_t> surface;
    Owned<cairo_t> cairo;
    Owned<PangoFontDescription> font;
};

struct Layout {
    int rowHeight = 0;
    int textHeight = 0;
    std::map<int, int> columnStart;
    std::map<int, int> columnEnd;
    PictureSize size{};
};

Layout measure(const Sample& sample)
{
    const Canvas canvas(sample, {1, 1});
    Layout result;
    std::map<int, int> columnWidth;
    for (const Row& row : sample.rows) {
        std::map<int, int> width;
        for (const Piece& piece : row.pieces) {
            const PictureSize extent = canvas.extent(piece);
            width[piece.column] += extent.width;
            result.textHeight = std::max(result.textHeight, extent.height);
        }
        for (const auto& [column, pixels] : width)
            columnWidth[column] = std::max(columnWidth[column], pixels);
    }
    int x = sample.margin;
    for (const auto& [column, pixels] : columnWidth) {
        result.columnStart[column] = x;
        result.columnEnd[column] = x + pixels;
        x += pixels + sample.columnGap;
    }
    result.rowHeight = static_cast<int>(std::lround(result.textHeight * sample.lineSpacing));
    result.size = {
        x - sample.columnGap + sample.margin,
        static_cast<int>(sample.rows.size()) * result.rowHeight + 2 * sample.margin};
    return result;
}

void paintRow(Canvas& canvas, const Sample& sample, const Layout& layout, const Row& row, int top)
{
    if (row.background)
        canvas.fill(*row.background, top, layout.rowHeight);
    const int y = top + (layout.rowHeight - layout.textHeight) / 2;
    std::map<int, int> next = layout.columnStart;
    for (const Piece& piece : row.pieces) {
        const int width = canvas.extent(piece).width;
        int& x = next[piece.column];
        if (piece.rightAligned)
            x = layout.columnEnd.at(piece.column) - width;
        canvas.write(piece, piece.colour.value_or(sample.foreground), x, y);
        x += width;
    }
}

} // namespace

void paint(Sample& sample, const std::filesystem::path& file, std::optional<PictureSize> exactly)
{
    Layout layout = measure(sample);
    if (exactly) {
        const auto fitting = (exactly->height - 2 * sample.margin) / layout.rowHeight;
        if (static_cast<int>(sample.rows.size()) > fitting)
            sample.rows.resize(static_cast<std::size_t>(fitting));
        layout.size = *exactly;
    }
    Canvas canvas(sample, layout.size);
    canvas.fill(sample.background, 0, layout.size.height);
    int top = sample.margin;
    for (const Row& row : sample.rows) {
        paintRow(canvas, sample, layout, row, top);
        top += layout.rowHeight;
    }
    canvas.save(file);
}

} // namespace tallowbay::bench
