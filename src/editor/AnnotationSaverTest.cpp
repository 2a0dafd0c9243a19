#include "editor/AnnotationSaver.h"

#include "editor/CanvasFixture.h"
#include "platform/headless/Desktop.h"
#include "platform/headless/PlainImageCodec.h"

namespace tallowbay {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using Arguments = std::vector<std::string>;

const std::filesystem::path optimized = "/home/u/Downloads/Tallowbay/optimized";

class AnnotationSaverTest : public CanvasTest {
protected:
    AnnotationSaverTest()
    {
        desktop.files.create(desktop.tools.pngquant);
        desktop.processes.install(desktop.tools.pngquant, [this](const Arguments& arguments) {
            desktop.files.create(
                arguments.at(3), "compressed " + desktop.files.read(arguments.back()).value());
            return 0;
        });
        for (const auto& url : urls)
            desktop.files.create(url, "original");
    }

    void save(std::size_t index) { saver->saveCurrentAnnotation(canvas, annotations, urls, index); }
    std::size_t drawings() const { return graphics.drawings().size(); }

    headless::Desktop desktop;
    headless::PlainImageCodec codec;
    headless::RecordingOffscreenGraphics graphics;
    std::optional<AnnotationSaver> saver{
        std::in_place, desktop.dispatch,
        AnnotationExporter(
            desktop.files, codec, graphics,
            ImageCompressor(desktop.files, desktop.processes, desktop.resources, desktop.tools))};
    const std::vector<std::filesystem::path> urls{optimized / "A.png", optimized / "B.png"};
    std::vector<std::vector<AnnotationItem>> annotations{{}, {}};
    const AnnotationItem item = highlightAt({{68, 98}, {100, 50}});
};

TEST_F(AnnotationSaverTest, TakesTheItemsOverAndWritesThePictureInTheBackground)
{
    canvas.appendAnnotation(item);
    save(1);
    EXPECT_THAT(annotations[1], ElementsAre(item));
    EXPECT_THAT(annotations[0], IsEmpty());
    EXPECT_EQ(drawings(), 0u);
    ASSERT_EQ(desktop.dispatch.backgroundCount(), 1u);
    EXPECT_EQ(desktop.dispatch.backgroundQuality(0), QualityOfService::userInitiated);

    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(drawings(), 1u);
    EXPECT_THAT(*desktop.files.read(urls[1]), testing::StartsWith("compressed PNG 200x150"));
    EXPECT_EQ(desktop.files.read(urls[0]), "original");
}

TEST_F(AnnotationSaverTest, UsesTheInsetOf48Points)
{
    canvas.appendAnnotation(item);
    save(0);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(graphics.drawings().at(0).lines.at(1), "fill rect(10 25 50 25) color(1 0.8 0 0.35)");
}

TEST_F(AnnotationSaverTest, SavesNothingWithoutABackgroundImage)
{
    canvas.appendAnnotation(item);
    canvas.setBackgroundImage(nullptr);
    save(0);
    EXPECT_THAT(annotations[0], IsEmpty());
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
}

TEST_F(AnnotationSaverTest, WritesNothingOnceTheListHasBecomeEmpty)
{
    annotations[0] = {item};
    save(0);
    EXPECT_THAT(annotations[0], IsEmpty());
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_EQ(desktop.files.read(urls[0]), "original");
}

TEST_F(AnnotationSaverTest, StopsAtAnIndexOutsideOfTheLists)
{
    canvas.appendAnnotation(item);
    EXPECT_DEATH(save(2), "out of range");
    annotations.resize(3);
    EXPECT_DEATH(save(2), "out of range");
}

TEST_F(AnnotationSaverTest, NamesAPathFromTheRequestUntilTheWriteHasEnded)
{
    canvas.appendAnnotation(item);
    save(0);
    EXPECT_THAT(saver->pathsBeingWritten(), ElementsAre(urls[0]));
    save(1);
    EXPECT_THAT(saver->pathsBeingWritten(), ElementsAre(urls[0], urls[1]));
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), ElementsAre(urls[1]));
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
}

TEST_F(AnnotationSaverTest, ForgetsAPathWhenItsFirstSaveEndsAlthoughAnotherIsWaiting)
{
    canvas.appendAnnotation(item);
    save(0);
    save(0);
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 2u);
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
}

TEST_F(AnnotationSaverTest, LetsTheSaveThatEndsLaterWin)
{
    canvas.appendAnnotation(item);
    save(0);
    canvas.appendAnnotation(item);
    save(0);
    desktop.dispatch.runBackground(1);
    desktop.dispatch.runBackground(0);
    const auto records = graphics.drawings();
    EXPECT_EQ(records.at(0).lines.size(), 3u);
    EXPECT_EQ(records.at(1).lines.size(), 2u);
    // The recording backend numbers its drawings in their first pixel.
    EXPECT_THAT(
        *desktop.files.read(urls[0]), testing::StartsWith("compressed PNG 200x150\nff000002"));
}

TEST_F(AnnotationSaverTest, SavesWhatWasThereWhenItWasAskedTo)
{
    canvas.appendAnnotation(item);
    save(0);
    canvas.setAnnotations({});
    canvas.setBackgroundImage(nullptr);
    canvas.setSize({0, 0});
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(graphics.drawings().at(0).lines.at(1), "fill rect(10 25 50 25) color(1 0.8 0 0.35)");
}

TEST_F(AnnotationSaverTest, ForgetsThePathEvenIfTheSaveFails)
{
    canvas.appendAnnotation(item);
    graphics.failNextDraw();
    save(0);
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    EXPECT_EQ(desktop.files.read(urls[0]), "original");
}

TEST_F(AnnotationSaverTest, CompletesASaveAfterItsOwnEnd)
{
    canvas.appendAnnotation(item);
    save(0);
    saver.reset();
    desktop.dispatch.runUntilIdle();
    EXPECT_NE(desktop.files.read(urls[0]), "original");
}

} // namespace
} // namespace tallowbay
