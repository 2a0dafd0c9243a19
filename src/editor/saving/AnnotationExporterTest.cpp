#include "editor/saving/AnnotationExporter.h"

#include "editor/AnnotationConstants.h"
#include "editor/CanvasFixture.h"
#include "platform/headless/Desktop.h"
#include "platform/headless/PlainImageCodec.h"

namespace tallowbay {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using Arguments = std::vector<std::string>;
using Lines = std::vector<std::string>;
using headless::optimized;

// Compressing tools that take away nothing, and a disk that remembers what its visible files held.
class AnnotationExporterTest : public testing::Test {
protected:
    AnnotationExporterTest()
    {
        for (const auto& tool : {desktop.tools.pngquant, desktop.tools.cjpeg}) {
            desktop.files.create(tool);
            desktop.processes.install(tool, [this](const Arguments& arguments) {
                const auto input = desktop.files.read(arguments.back());
                if (!input || failing)
                    return 1;
                desktop.files.create(arguments.at(3), "compressed " + *input);
                return 0;
            });
        }
        watching = desktop.files.listen([this](const std::filesystem::path& path, auto) {
            if (path.parent_path() == optimized)
                seen.push_back(desktop.files.read(path).value_or("gone"));
        });
    }

    static Image imageOf(PixelSize size) { return std::make_shared<Bitmap>(size); }

    // On a canvas of 496 x 396 points, which shows a picture of 200 x 150 at twice its size.
    Lines flattened(
        const std::vector<AnnotationItem>& items, PixelSize size = {200, 150},
        Size canvas = {496, 396})
    {
        EXPECT_TRUE(exporter.flattenAnnotation(imageOf(size), items, canvas, imageInset));
        auto lines = graphics.drawings().back().lines;
        EXPECT_THAT(lines.front(), testing::StartsWith("image "));
        lines.erase(lines.begin());
        return lines;
    }

    // Both halves, as a save does it
    void write(const std::filesystem::path& url)
    {
        if (const auto bytes = exporter.compressed(bitmap, url))
            exporter.writeFlattenedImage(*bytes, url);
    }

    headless::Desktop desktop;
    headless::PlainImageCodec codec;
    headless::RecordingOffscreenGraphics graphics;
    AnnotationExporter exporter{
        desktop.files, codec, graphics,
        ImageCompressor(desktop.files, desktop.processes, desktop.resources, desktop.tools)};
    Bitmap bitmap{{2, 1}};
    bool failing = false;
    std::vector<std::string> seen;
    Subscription watching;
};

TEST_F(AnnotationExporterTest, DrawsTheSourceInItsOwnPixelsOnASurfaceOfItsSize)
{
    ASSERT_TRUE(exporter.flattenAnnotation(imageOf({200, 150}), {}, {1600, 1000}, imageInset));
    const auto record = graphics.drawings().at(0);
    EXPECT_EQ(record.size, (PixelSize{200, 150}));
    EXPECT_EQ(record.pixelsPerUnit, 1);
    EXPECT_THAT(record.lines, ElementsAre("image 200x150 rect(0 0 200 150)"));
}

TEST_F(AnnotationExporterTest, FillsAHighlightInImagePixels)
{
    EXPECT_THAT(
        flattened({highlightAt({{68, 98}, {100, 50}})}),
        ElementsAre("fill rect(10 25 50 25) color(1 0.8 0 0.35)"));
    EXPECT_THAT(
        flattened({highlightAt({{168, 148}, {-100, -50}})}),
        ElementsAre("fill rect(10 25 50 25) color(1 0.8 0 0.35)"));
}

TEST_F(AnnotationExporterTest, HalvesArrowAndTextOnACanvasOfTwiceTheSize)
{
    EXPECT_THAT(
        flattened({arrowAt({{68, 98}, {100, 0}}, systemRed), textAt({68, 98}, "a b", systemBlue)}),
        ElementsAre(
            "stroke line(10 25, 60 25) color(1 0.231 0.188 1) width 3 round",
            "fill polygon(60 25, 47.0096 32.5, 47.0096 17.5) color(1 0.231 0.188 1)",
            "text \" a b \" at(10 25) size 8 semibold color(0 0.478 1 1) background(0 0 0 0.6)"));
}

TEST_F(AnnotationExporterTest, EnlargesArrowAndTextOfALargeImage)
{
    // 904 x 904 points for 1808 x 1808 pixels: half its size.
    EXPECT_THAT(
        flattened(
            {arrowAt({{48, 48}, {0, 100}}), textAt({48, 48}, "t")}, {1808, 1808}, {1000, 1000}),
        ElementsAre(
            "stroke line(0 0, 0 200) color(1 0.8 0 1) width 12 round",
            "fill polygon(0 200, -30 148.038, 30 148.038) color(1 0.8 0 1)",
            "text \" t \" at(0 0) size 32 semibold color(1 0.8 0 1) background(0 0 0 0.6)"));
}

TEST_F(AnnotationExporterTest, KeepsTheOrderOfTheItems)
{
    const auto lines = flattened(
        {textAt({68, 98}, "t"), highlightAt({{68, 98}, {100, 50}}), textAt({68, 98}, "u")});
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_THAT(lines[0], testing::HasSubstr("\" t \""));
    EXPECT_THAT(lines[1], testing::HasSubstr("fill rect"));
    EXPECT_THAT(lines[2], testing::HasSubstr("\" u \""));
}

TEST_F(AnnotationExporterTest, LeavesNoTraceOfATextThatIsEmptyOrAbsent)
{
    const AnnotationItem absent{AnnotationTool::text, {{68, 98}, {}}, std::nullopt, systemRed};
    EXPECT_THAT(flattened({textAt({68, 98}, ""), absent}), IsEmpty());
}

TEST_F(AnnotationExporterTest, UsesBlurCellsOf8PixelsWhereATenthIsLess)
{
    // 50 x 50 pixels: 7 x 7 cells, the last row and column 2 pixels wide.
    Lines expected{"fill rect(10 20 50 50)" + blurBase};
    for (int row = 0; row < 7; ++row)
        for (int column = 0; column < 7; ++column)
            if ((row + column) % 2 == 0)
                expected.push_back(
                    "fill rect(" + std::to_string(10 + column * 8) + " "
                    + std::to_string(20 + row * 8) + (column == 6 ? " 2" : " 8")
                    + (row == 6 ? " 2)" : " 8)") + blurCell);
    EXPECT_EQ(flattened({blurAt({{68, 88}, {100, 100}})}), expected);
    EXPECT_EQ(flattened({blurAt({{168, 188}, {-100, -100}})}), expected);
}

TEST_F(AnnotationExporterTest, UsesBlurCellsOfATenthOfTheShorterSide)
{
    const auto lines = flattened({blurAt({{48, 48}, {400, 300}})});
    EXPECT_EQ(lines.at(0), "fill rect(0 0 200 150)" + blurBase);
    EXPECT_EQ(lines.at(1), "fill rect(0 0 15 15)" + blurCell);
    EXPECT_EQ(lines.at(2), "fill rect(30 0 15 15)" + blurCell);
    EXPECT_EQ(lines.size(), 1u + 14 * 10 / 2);
}

TEST_F(AnnotationExporterTest, HidesPixelsThatABlurTouchesInPartAndKeepsItsCells)
{
    const auto lines = flattened({blurAt({{69, 89}, {40.5, 20.5}})});
    EXPECT_EQ(lines.at(0), "fill rect(10 20 21 11)" + blurBase);
    EXPECT_EQ(lines.at(1), "fill rect(10.5 20.5 8 8)" + blurCell);
    EXPECT_EQ(lines.at(2), "fill rect(26.5 20.5 4.25 8)" + blurCell);
}

TEST_F(AnnotationExporterTest, PaintsOnlyTheBaseOfABlurWithoutWidth)
{
    EXPECT_THAT(
        flattened({blurAt({{69, 89}, {0, 20}})}),
        ElementsAre("fill rect(10.5 20.5 0 10)" + blurBase));
}

TEST_F(AnnotationExporterTest, StopsAtABlurWithoutAFiniteNumberOfCells)
{
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_DEATH(flattened({blurAt({{0, 0}, {endless, 10}})}), "finite number of cells");
}

TEST_F(AnnotationExporterTest, FlattensNothingWithoutAnImageOrRoomForOne)
{
    EXPECT_FALSE(exporter.flattenAnnotation(nullptr, {}, {496, 396}, imageInset));
    EXPECT_FALSE(exporter.flattenAnnotation(imageOf({2, 2}), {}, {96, 396}, imageInset));
    EXPECT_FALSE(exporter.flattenAnnotation(imageOf({2, 2}), {}, {0, 0}, imageInset));
    EXPECT_THAT(graphics.drawings(), IsEmpty());
    graphics.failNextDraw();
    EXPECT_FALSE(exporter.flattenAnnotation(imageOf({2, 2}), {}, {496, 396}, imageInset));
}

// Writing

TEST_F(AnnotationExporterTest, ChoosesTheFormatByTheExtensionWhateverItsCase)
{
    const std::vector<std::pair<const char*, const char*>> rows{
        {"Shot.png", "PNG 2x1"},        {"Shot.PNG", "PNG 2x1"},
        {"Shot.Png", "PNG 2x1"},        {"Shot.jpg", "JPEG 0.85 2x1"},
        {"Shot.JPEG", "JPEG 0.85 2x1"}, {"Shot.gif", "JPEG 0.85 2x1"},
        {"Shot", "JPEG 0.85 2x1"},      {"png", "JPEG 0.85 2x1"},
    };
    for (const auto& [name, head] : rows) {
        const auto bytes = exporter.encode(bitmap, optimized / name);
        ASSERT_TRUE(bytes);
        EXPECT_EQ(bytes->substr(0, bytes->find('\n')), head) << name;
    }
}

TEST_F(AnnotationExporterTest, ReplacesTheVisibleFileByTheCompressedOneAtOnce)
{
    desktop.files.create(optimized / "Shot.PNG", "old");
    seen.clear();
    write(optimized / "Shot.PNG");
    EXPECT_EQ(desktop.files.read(optimized / "Shot.PNG"), "compressed PNG 2x1\n0000000000000000");
    EXPECT_THAT(seen, ElementsAre("compressed PNG 2x1\n0000000000000000"));
}

TEST_F(AnnotationExporterTest, LetsTheToolsWorkInAFolderOfTheirOwnUnderTheSameName)
{
    write(optimized / "Shot.jpg");
    ASSERT_EQ(desktop.processes.journal.size(), 1u);
    const auto& arguments = desktop.processes.journal[0].arguments;
    const std::filesystem::path input = arguments.back();
    EXPECT_EQ(input.filename(), "Shot.jpg");
    EXPECT_EQ(input.parent_path().parent_path(), "/tmp");
    EXPECT_EQ(std::filesystem::path(arguments.at(3)), input.parent_path() / "compressed/Shot.jpg");
    EXPECT_EQ(desktop.files.list("/tmp")->size(), 0u) << "nothing stays behind";
}

TEST_F(AnnotationExporterTest, CreatesTheVisibleFolderWhereItIsMissing)
{
    write("/elsewhere/Shot.png");
    EXPECT_TRUE(desktop.files.exists(optimized / "Shot.png"));
    EXPECT_FALSE(desktop.files.exists("/elsewhere/Shot.png"));
}

TEST_F(AnnotationExporterTest, LeavesTheVisibleFileAloneWhenTheToolsFail)
{
    desktop.files.create(optimized / "Shot.png", "old");
    failing = true;
    write(optimized / "Shot.png");
    EXPECT_EQ(desktop.files.read(optimized / "Shot.png"), "old");
    EXPECT_EQ(desktop.files.list("/tmp")->size(), 0u);
}

TEST_F(AnnotationExporterTest, RunsNoToolWhenNothingCanBeEncoded)
{
    codec.failEncoding = true;
    write(optimized / "Shot.png");
    EXPECT_THAT(desktop.processes.journal, IsEmpty());
    EXPECT_FALSE(desktop.files.exists(optimized / "Shot.png"));
}

TEST_F(AnnotationExporterTest, KeepsTheVisibleFileWhenThereIsNoRoomForATemporaryOne)
{
    desktop.files.create(optimized / "Shot.png", "old");
    desktop.files.makeReadOnly("/tmp");
    write(optimized / "Shot.png");
    EXPECT_EQ(desktop.files.read(optimized / "Shot.png"), "old");
}

TEST_F(AnnotationExporterTest, RunsTheToolAlthoughItsInputCouldNotBeWritten)
{
    desktop.files.create(optimized / "Shot.png", "old");
    desktop.files.makeReadOnly("/tmp/folder-1/Shot.png");
    write(optimized / "Shot.png");
    ASSERT_THAT(desktop.processes.journal, testing::Not(IsEmpty()));
    EXPECT_EQ(desktop.processes.journal[0].program, desktop.tools.pngquant);
    EXPECT_EQ(desktop.files.read(optimized / "Shot.png"), "old");
}

// What rounding alone makes of a mask is no pixel of the picture.
TEST_F(AnnotationExporterTest, HidesNoPixelForAMaskOfNoWidthOrHeight)
{
    EXPECT_THAT(
        flattened({blurAt({{148, 98}, {1e-8, 100}})}).front(),
        testing::StartsWith("fill rect(50 25 0 50)"));
    EXPECT_THAT(
        flattened({blurAt({{148, 98}, {100, 1e-8}})}).front(),
        testing::StartsWith("fill rect(50 25 50 0)"));
}

} // namespace
} // namespace tallowbay
