#include "editor/AnnotationConstants.h"
#include "editor/CanvasRenderer.h"
#include "editor/QtFixture.h"
#include "editor/ReferencePicture.h"
#include "editor/ShapeRenderer.h"
#include "editor/saving/AnnotationExporter.h"
#include "platform/contract/OffscreenGraphicsContract.h"

#include <QFontMetricsF>
#include <QPainter>

#include <gmock/gmock.h>

#include <cmath>

namespace tallowbay::test {
namespace {

constexpr Color blurBase = Color::white(0.12);
constexpr Color blurCells = Color::white(0.18);

// Sampling leaves an error of a sixteenth at edges between the grid's lines, and a painter that
// draws a circle with short lines adds to it.
constexpr int edgeTolerance = 24;
constexpr double meanTolerance = 0.6;

AnnotationItem item(AnnotationTool tool, Rect rect, Color color = systemYellow)
{
    return {tool, rect, std::nullopt, color};
}

// Every picture at the scale of a plain and of a dense screen.
class CanvasPixelTest : public QtTest, public testing::WithParamInterface<double> {
protected:
    static constexpr Size points{200, 160};

    // The items over an image that fills the middle of the canvas with one colour.
    Bitmap rendered(CanvasState state, std::optional<LivePreview> preview = {})
    {
        state.size = points;
        state.backgroundImage = plainImage({104, 64}, 0xFF306090u);
        return *graphics.draw(pixels(), GetParam(), [&](GraphicsContext& context) {
            context.fill(Rect{{0, 0}, points}, Color::white(1));
            drawCanvas(context, state, preview);
        });
    }
    Bitmap rendered(const AnnotationItem& shown)
    {
        CanvasState state;
        state.annotations = {shown};
        return rendered(state);
    }

    ReferencePicture reference() const
    {
        ReferencePicture picture(pixels(), GetParam(), Color::white(1));
        picture.fillRect({{48, 48}, {104, 64}}, {0x30 / 255.0, 0x60 / 255.0, 0x90 / 255.0});
        return picture;
    }
    PixelSize pixels() const
    {
        return {
            static_cast<int>(points.width * GetParam()),
            static_cast<int>(points.height * GetParam())};
    }
    static void expectSame(const ReferencePicture& expected, const Bitmap& actual)
    {
        EXPECT_LE(expected.largestDifference(actual), edgeTolerance);
        EXPECT_LE(expected.meanDifference(actual), meanTolerance);
    }
};
INSTANTIATE_TEST_SUITE_P(Scales, CanvasPixelTest, testing::Values(1.0, 2.0));

TEST_P(CanvasPixelTest, ShowsTheImageInsideOfItsInset)
{
    EXPECT_LE(reference().largestDifference(rendered(CanvasState{})), 1);
}

TEST_P(CanvasPixelTest, ShowsNoBackdropBesideTheImage)
{
    // 104 x 64.3 points: the upper and the lower edge lie between the pixels.
    CanvasState state;
    state.size = points;
    state.backgroundImage = plainImage({1040, 643}, 0xFFFFFFFFu);
    const Bitmap actual = *graphics.draw(pixels(), GetParam(), [&](GraphicsContext& context) {
        context.fill(Rect{{0, 0}, points}, Color::white(1));
        drawCanvas(context, state, {});
    });
    for (int y = 0; y < pixels().height; ++y)
        for (int x = 0; x < pixels().width; ++x)
            ASSERT_EQ(actual.pixel(x, y), 0xFFFFFFFFu) << x << ", " << y;
}

TEST_P(CanvasPixelTest, BlendsAHighlightAt035)
{
    ReferencePicture expected = reference();
    expected.fillRect({{30, 60}, {60, 30}}, systemYellow.withAlpha(0.35));
    const Bitmap actual = rendered(item(AnnotationTool::highlight, {{90, 90}, {-60, -30}}));
    EXPECT_LE(expected.largestDifference(actual), 2);
    // 0x30 and 0x60 under 255 and 204 at 0.35: 0x30 * 0.65 + 255 * 0.35 = 120.45
    const auto at = [&](double x, double y) {
        return actual.pixel(
            static_cast<int>(x * GetParam()), static_cast<int>((points.height - y) * GetParam()));
    };
    EXPECT_NEAR(static_cast<int>(at(60, 75) >> 16 & 0xFF), 120, 1);
    EXPECT_NEAR(static_cast<int>(at(60, 75) >> 8 & 0xFF), 134, 1);
    EXPECT_NEAR(static_cast<int>(at(60, 75) & 0xFF), 94, 1);
}

TEST_P(CanvasPixelTest, PaintsTheCheckerboardCellForCell)
{
    ReferencePicture expected = reference();
    expected.checkerboard({{40, 50}, {80, 100}}, 10, blurBase, blurCells);
    const Bitmap actual = rendered(item(AnnotationTool::blur, {{40, 50}, {80, 100}}));
    EXPECT_LE(expected.largestDifference(actual), 1);
}

TEST_P(CanvasPixelTest, ClipsTheLastCellsOfTheCheckerboard)
{
    ReferencePicture expected = reference();
    expected.checkerboard({{40, 50}, {20, 100}}, 6, blurBase, blurCells);
    const Bitmap actual = rendered(item(AnnotationTool::blur, {{60, 150}, {-20, -100}}));
    EXPECT_LE(expected.largestDifference(actual), 1);
}

TEST_P(CanvasPixelTest, DrawsArrowsInEveryDirection)
{
    for (const Size vector : {Size{60, 0}, Size{0, -50}, Size{-60, 35}, Size{25, 45}}) {
        ReferencePicture expected = reference();
        const Point start{100, 80};
        expected.arrow(
            start, {start.x + vector.width, start.y + vector.height}, 2.5, 14, systemRed);
        expectSame(expected, rendered(item(AnnotationTool::arrow, {start, vector}, systemRed)));
    }
}

TEST_P(CanvasPixelTest, DecoratesASelectedAndHoveredHighlight)
{
    CanvasState state;
    state.annotations = {item(AnnotationTool::highlight, {{60, 60}, {50, 40}})};
    state.selectedAnnotationIndex = 0;
    state.hoveredIndex = 0;
    ReferencePicture expected = reference();
    expected.fillRect({{60, 60}, {50, 40}}, systemYellow.withAlpha(0.35));
    expected.strokeRect({{58, 58}, {54, 44}}, 1.5, {0.3, 0.6, 1.0, 0.8});
    for (const Point corner : {Point{60, 60}, Point{110, 60}, Point{60, 100}, Point{110, 100}}) {
        expected.fillCircle(corner, 5, Color::white(1));
        expected.strokeCircle(corner, 5, 1.5, systemBlue);
    }
    expectSame(expected, rendered(state));
}

TEST_P(CanvasPixelTest, DecoratesAHoveredArrow)
{
    CanvasState state;
    state.annotations = {item(AnnotationTool::arrow, {{60, 60}, {70, 50}})};
    state.movingIndex = 0;
    ReferencePicture expected = reference();
    expected.arrow({60, 60}, {130, 110}, 2.5, 14, systemYellow);
    for (const Point end : {Point{60, 60}, Point{130, 110}}) {
        expected.fillCircle(end, 5, Color::white(1));
        expected.strokeCircle(end, 5, 1.5, systemRed);
    }
    expectSame(expected, rendered(state));
}

TEST_P(CanvasPixelTest, PreviewsShapes)
{
    CanvasState state;
    state.dragStart = {30, 40};
    state.liveRect = Rect{{30, 40}, {80, 80}};

    ReferencePicture highlight = reference();
    highlight.fillRect(*state.liveRect, systemBlue.withAlpha(0.25));
    highlight.strokeRect(*state.liveRect, 1.5, systemBlue.withAlpha(0.8));
    expectSame(highlight, rendered(state, LivePreview{AnnotationTool::highlight, systemBlue}));

    ReferencePicture blur = reference();
    blur.checkerboard(*state.liveRect, 10, blurBase, blurCells);
    blur.strokeRect(*state.liveRect, 1, systemRed.withAlpha(0.4));
    expectSame(blur, rendered(state, LivePreview{AnnotationTool::blur, systemBlue}));
}

TEST_P(CanvasPixelTest, StandsATextInTheBoxThatIsMeasured)
{
    const AnnotationItem text{AnnotationTool::text, {{20, 20}, {}}, "Hxg", Color::white(1)};
    const Bitmap actual = rendered(text);
    const Size box = fonts.measure(" Hxg ", annotationFont);
    const Bitmap bare = rendered(CanvasState{});
    double left = 1e9, right = -1, bottom = 1e9, top = -1;
    bool hasLetters = false;
    for (int y = 0; y < pixels().height; ++y) {
        for (int x = 0; x < pixels().width; ++x) {
            if (actual.pixel(x, y) == bare.pixel(x, y))
                continue;
            left = std::min(left, x / GetParam());
            right = std::max(right, (x + 1) / GetParam());
            top = std::max(top, (pixels().height - y) / GetParam());
            bottom = std::min(bottom, (pixels().height - y - 1) / GetParam());
            hasLetters = hasLetters || (actual.pixel(x, y) & 0xFF) > 0xE0;
        }
    }
    // The background's edges, to the pixel that they touch
    EXPECT_DOUBLE_EQ(left, 20);
    EXPECT_DOUBLE_EQ(bottom, 20);
    EXPECT_NEAR(right, 20 + box.width, 1.01 / GetParam());
    EXPECT_NEAR(top, 20 + box.height, 1.01 / GetParam());
    EXPECT_TRUE(hasLetters);
    // White at 0.4 is left of the canvas beside the letters
    const int row = pixels().height - static_cast<int>(22 * GetParam());
    EXPECT_NEAR(
        static_cast<int>(actual.pixel(static_cast<int>(21 * GetParam()), row) & 0xFF), 102, 1);
}

// White letters on black, drawn here by the painter itself
QImage lettersByHand(PixelSize pixels, double scale, QFont font, QFont::Weight weight)
{
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setWeight(weight);
    font.setPixelSize(160);
    const QFontMetricsF large(font);
    font.setPixelSize(16);
    QImage image(pixels.width, pixels.height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    painter.setFont(font);
    painter.setPen(Qt::white);
    const double baseline = 20 + (large.height() - large.ascent()) / 10;
    painter.drawText(QPointF(20, pixels.height / scale - baseline), " Hxg 123 ");
    return image;
}

double meanDifference(const Bitmap& actual, const QImage& expected)
{
    double sum = 0;
    for (int y = 0; y < expected.height(); ++y)
        for (int x = 0; x < expected.width(); ++x)
            sum +=
                std::abs(static_cast<int>(actual.pixel(x, y) & 0xFF) - qBlue(expected.pixel(x, y)));
    return sum / (expected.width() * expected.height());
}

TEST_P(CanvasPixelTest, SetsTextInSemiboldOnItsBaseline)
{
    const AnnotationItem text{AnnotationTool::text, {{20, 20}, {}}, "Hxg 123", Color::white(1)};
    const Bitmap actual = *graphics.draw(pixels(), GetParam(), [&](GraphicsContext& context) {
        context.fill(Rect{{0, 0}, points}, Color::white(0));
        drawItem(context, text, ShapeStyle::forCanvas());
    });
    const QFont font = fonts.scaled(annotationFont).font;
    const auto byHand = [&](QFont::Weight weight) {
        return meanDifference(actual, lettersByHand(pixels(), GetParam(), font, weight));
    };
    EXPECT_LT(byHand(QFont::DemiBold), 0.1);
    ASSERT_GT(byHand(QFont::Normal), 0.3) << "the fonts of this machine do not tell weights apart";
}

// A mask that followed a text would else hide another place.
TEST_P(CanvasPixelTest, DrawsWhatFollowsATextOrAnArrowWhereItBelongs)
{
    const AnnotationItem mask = item(AnnotationTool::blur, {{100, 90}, {61, 37}});
    const Bitmap expected = rendered(mask);
    for (const AnnotationItem& first :
         {AnnotationItem{AnnotationTool::text, {{20, 20}, {}}, "Hxg", systemRed},
          item(AnnotationTool::arrow, {{20, 20}, {40, 30}})}) {
        CanvasState state;
        state.annotations = {first, mask};
        const Bitmap actual = rendered(state);
        EXPECT_NE(actual, expected);
        const int bottom = static_cast<int>(85 * GetParam()); // everything else lies below
        for (int y = 0; y < pixels().height - bottom; ++y)
            for (int x = 0; x < pixels().width; ++x)
                ASSERT_EQ(actual.pixel(x, y), expected.pixel(x, y)) << x << ", " << y;
    }
}

TEST_F(QtTest, ClosesTheInsideOfAShapeThatIsThinnerThanItsOutline)
{
    const auto bitmap = graphics.draw({30, 30}, 1, [](GraphicsContext& context) {
        context.fill(Rect{{0, 0}, {30, 30}}, Color::white(0));
        context.stroke(Rect{{4, 5}, {1, 20}}, Color::white(1), {4});
        context.stroke(Rect{{10, 15}, {15, 1}}, Color::white(1), {4});
    });
    for (int along = 8; along < 22; ++along)
        EXPECT_EQ(bitmap->pixel(4, 29 - along), 0xFFFFFFFFu) << along;
    for (int along = 12; along < 23; ++along)
        EXPECT_EQ(bitmap->pixel(along, 29 - 15), 0xFFFFFFFFu) << along;
}

TEST_F(QtTest, CutsColoursOffAtTheirLimits)
{
    const auto bitmap = graphics.draw({2, 1}, 1, [](GraphicsContext& context) {
        context.fill(Rect{{0, 0}, {1, 1}}, {1.5, 1.001, 7, 2});
        context.fill(Rect{{1, 0}, {1, 1}}, {-1, 0.5, -0.001, 1});
    });
    EXPECT_EQ(bitmap->pixel(0, 0), 0xFFFFFFFFu);
    EXPECT_EQ(bitmap->pixel(1, 0), 0xFF008000u);
}

TEST_F(QtTest, ReplacesWhatIsThereWhenItComposesByCopy)
{
    const auto bitmap = graphics.draw({2, 1}, 1, [](GraphicsContext& context) {
        context.fill(Rect{{0, 0}, {2, 1}}, Color::white(1));
        context.setCompositingOperation(CompositingOperation::copy);
        EXPECT_EQ(context.compositingOperation(), CompositingOperation::copy);
        context.fill(Rect{{0, 0}, {1, 1}}, {1, 0, 0, 0});
    });
    EXPECT_EQ(bitmap->pixel(0, 0), 0u);
    EXPECT_EQ(bitmap->pixel(1, 0), 0xFFFFFFFFu);
}

// The written picture

class ExportPixelTest : public QtTest {
protected:
    // Burnt in, written as a PNG and read again.
    Bitmap flattened(const Image& image, const std::vector<AnnotationItem>& items, Size canvas)
    {
        const auto bitmap = graphics.draw(image->size(), 1, [&](GraphicsContext& context) {
            drawFlattened(context, image, items, canvas, imageInset);
        });
        return std::get<Bitmap>(codec.decode(*codec.encodePng(*bitmap)));
    }
    ReferencePicture reference(PixelSize size) const
    {
        return {size, 1, {0x30 / 255.0, 0x60 / 255.0, 0x90 / 255.0}};
    }
    static constexpr std::uint32_t ground = 0xFF306090u;
};

TEST_F(ExportPixelTest, GivesBackAPictureWithoutItemsBitForBit)
{
    auto bitmap = std::make_shared<Bitmap>(PixelSize{97, 31});
    for (int y = 0; y < 31; ++y)
        for (int x = 0; x < 97; ++x)
            bitmap->row(y)[x] = 0xFF000000u | static_cast<std::uint32_t>((y * 97 + x) * 5003);
    EXPECT_EQ(flattened(bitmap, {}, {500, 400}), *bitmap);
}

TEST_F(ExportPixelTest, DrawsTheHeavierArrow)
{
    // The canvas shows 200 x 150 pixels at twice their size, from (48, 48).
    ReferencePicture expected = reference({200, 150});
    expected.arrow({30, 40}, {120, 100}, 3, 15, systemRed);
    const Bitmap actual = flattened(
        plainImage({200, 150}, ground),
        {item(AnnotationTool::arrow, {{108, 128}, {180, 120}}, systemRed)}, {496, 396});
    EXPECT_LE(expected.largestDifference(actual), edgeTolerance);
    EXPECT_LE(expected.meanDifference(actual), meanTolerance);
}

TEST_F(ExportPixelTest, PaintsTheCheckerboardCellForCell)
{
    ReferencePicture expected = reference({200, 150});
    expected.checkerboard({{10, 20}, {50, 50}}, 8, blurBase, blurCells);
    expected.checkerboard({{80, 5}, {110, 130}}, 11, blurBase, blurCells);
    const Bitmap actual = flattened(
        plainImage({200, 150}, ground),
        {item(AnnotationTool::blur, {{68, 88}, {100, 100}}),
         item(AnnotationTool::blur, {{428, 318}, {-220, -260}})},
        {496, 396});
    EXPECT_LE(expected.largestDifference(actual), 1);
}

TEST_F(ExportPixelTest, BlendsAHighlightAt035)
{
    ReferencePicture expected = reference({200, 150});
    expected.fillRect({{10, 20}, {50, 50}}, systemBlue.withAlpha(0.35));
    const Bitmap actual = flattened(
        plainImage({200, 150}, ground),
        {item(AnnotationTool::highlight, {{68, 88}, {100, 100}}, systemBlue)}, {496, 396});
    EXPECT_LE(expected.largestDifference(actual), 2);
}

TEST_F(ExportPixelTest, DarkensAHighlightThatIsBurntInTwice)
{
    const std::vector<AnnotationItem> items{
        item(AnnotationTool::highlight, {{68, 88}, {100, 100}})};
    const auto once =
        std::make_shared<Bitmap>(flattened(plainImage({200, 150}, ground), items, {496, 396}));
    auto moved = items;
    moved[0].rect.origin.x += 100;
    ReferencePicture expected = reference({200, 150});
    expected.fillRect({{10, 20}, {50, 50}}, systemYellow.withAlpha(0.35));
    expected.fillRect({{60, 20}, {50, 50}}, systemYellow.withAlpha(0.35));
    EXPECT_LE(expected.largestDifference(flattened(once, moved, {496, 396})), 3);
}

TEST_F(ExportPixelTest, ScalesTextWithThePicture)
{
    // Shown at half its size: the text's box is twice as large in the picture.
    const Bitmap actual = flattened(
        plainImage({600, 400}, 0xFFFFFFFFu),
        {{AnnotationTool::text, {{148, 148}, {}}, "Hxg", systemRed}}, {396, 296});
    const Size box = fonts.measure(" Hxg ", annotationFont);
    int left = 600, right = 0, bottom = 400, top = 0;
    for (int y = 0; y < 400; ++y) {
        for (int x = 0; x < 600; ++x) {
            if (actual.pixel(x, y) == 0xFFFFFFFFu)
                continue;
            left = std::min(left, x);
            right = std::max(right, x + 1);
            top = std::max(top, 400 - y);
            bottom = std::min(bottom, 400 - y - 1);
        }
    }
    EXPECT_EQ(left, 200);
    EXPECT_EQ(bottom, 200);
    EXPECT_NEAR(right, 200 + 2 * box.width, 1.01);
    EXPECT_NEAR(top, 200 + 2 * box.height, 1.01);
}

TEST_F(ExportPixelTest, KeepsTransparencyWhereNothingIsDrawn)
{
    const Bitmap actual = flattened(
        plainImage({20, 20}, 0), {item(AnnotationTool::blur, {{48, 48}, {20, 40}})}, {136, 136});
    EXPECT_EQ(actual.pixel(15, 5), 0u);
    EXPECT_EQ(actual.pixel(5, 15) >> 24, 0xFFu);
}

struct QtGraphicsBackend {
    QtApplicationForFonts application;
    qt::QtOffscreenGraphics offscreen{qt::GraphicsFonts()};

    const OffscreenGraphics& graphics() { return offscreen; }
};

} // namespace
} // namespace tallowbay::test

namespace tallowbay::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, OffscreenGraphicsContract, test::QtGraphicsBackend);

} // namespace tallowbay::contract
