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

class AnnotationSaverTest : public testing::Test {
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

    void save(std::size_t index = 0) { saver->save({urls.at(index), items, picture, {496, 396}}); }
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
    const AnnotationItem item = highlightAt({{68, 98}, {100, 50}});
    std::vector<AnnotationItem> items{item};
    Image picture = std::make_shared<Bitmap>(PixelSize{200, 150});
};

TEST_F(AnnotationSaverTest, WritesThePictureInTheBackground)
{
    save(1);
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
    save();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(graphics.drawings().at(0).lines.at(1), "fill rect(10 25 50 25) color(1 0.8 0 0.35)");
}

TEST_F(AnnotationSaverTest, SavesNothingWithoutAPicture)
{
    picture = nullptr;
    save();
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
}

TEST_F(AnnotationSaverTest, WritesNothingOnceTheListHasBecomeEmpty)
{
    items.clear();
    save();
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    EXPECT_EQ(desktop.files.read(urls[0]), "original");
}

TEST_F(AnnotationSaverTest, NamesAPathFromTheRequestUntilTheWriteHasEnded)
{
    save();
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
    save();
    save();
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 2u);
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
}

TEST_F(AnnotationSaverTest, LetsTheSaveThatEndsLaterWin)
{
    save();
    items.push_back(item);
    save();
    desktop.dispatch.runBackground(1);
    desktop.dispatch.runBackground(0);
    const auto records = graphics.drawings();
    EXPECT_EQ(records.at(0).lines.size(), 3u);
    EXPECT_EQ(records.at(1).lines.size(), 2u);
    // The recording backend numbers its drawings in their first pixel.
    EXPECT_THAT(
        *desktop.files.read(urls[0]), testing::StartsWith("compressed PNG 200x150\nff000002"));
}

TEST_F(AnnotationSaverTest, ForgetsThePathEvenIfTheSaveFails)
{
    graphics.failNextDraw();
    save();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    EXPECT_EQ(desktop.files.read(urls[0]), "original");
}

TEST_F(AnnotationSaverTest, CompletesASaveAfterItsOwnEnd)
{
    save();
    saver.reset();
    desktop.dispatch.runUntilIdle();
    EXPECT_NE(desktop.files.read(urls[0]), "original");
}

} // namespace
} // namespace tallowbay
