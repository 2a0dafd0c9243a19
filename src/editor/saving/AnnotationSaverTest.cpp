#include "editor/saving/AnnotationSaver.h"

#include "editor/CanvasFixture.h"
#include "platform/headless/Desktop.h"
#include "platform/headless/PlainImageCodec.h"

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using Arguments = std::vector<std::string>;
using headless::optimized;

class AnnotationSaverTest : public testing::Test {
protected:
    AnnotationSaverTest()
    {
        desktop.files.create(desktop.tools.pngquant);
        desktop.processes.install(desktop.tools.pngquant, [this](const Arguments& arguments) {
            desktop.files.create(
                arguments.at(3), "compressed " + desktop.files.read(arguments.back()).value());
            if (const auto action = std::exchange(whileCompressing, nullptr))
                action();
            return 0;
        });
        for (const auto& url : urls)
            desktop.files.create(url, "original");
        saver->onWritten = [this](const auto& url, bool succeeded) {
            written.push_back(url);
            successes.push_back(succeeded);
        };
        watching = desktop.files.listen([this](const std::filesystem::path& path, auto) {
            if (path == urls[0])
                shown.push_back(*drawingIn(path));
        });
    }

    void save(std::size_t index = 0) { saver->save({urls.at(index), items, picture, {496, 396}}); }
    void saveWithoutRoom() { saver->save({urls[0], items, picture, {90, 90}}); } // fails
    std::size_t drawings() const { return graphics.drawings().size(); }

    // The recording backend numbers its drawings in their first pixel.
    std::optional<int> drawingIn(const std::filesystem::path& url) const
    {
        const auto bytes = desktop.files.read(url).value_or("");
        const auto line = bytes.find("\nff");
        return line == std::string::npos ? std::nullopt
                                         : std::optional(std::stoi(bytes.substr(line + 3, 6)));
    }
    std::size_t itemsIn(int drawing) const
    {
        return graphics.drawings().at(static_cast<std::size_t>(drawing) - 1).lines.size() - 1;
    }

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
    std::function<void()> whileCompressing; // once
    std::vector<std::filesystem::path> written;
    std::vector<bool> successes; // of each
    std::vector<int> shown; // the drawings that the first file came to hold
    Subscription watching;
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
    save(0);
    EXPECT_THAT(saver->pathsBeingWritten(), ElementsAre(urls[0]));
    save(1);
    EXPECT_THAT(saver->pathsBeingWritten(), ElementsAre(urls[0], urls[1]));
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 2u) << "side by side";
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), ElementsAre(urls[1]));
    EXPECT_THAT(written, ElementsAre(urls[0]));
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    EXPECT_THAT(written, ElementsAre(urls[0], urls[1]));
}

TEST_F(AnnotationSaverTest, ForgetsThePathOnTheMainQueueAndNotInTheJob)
{
    save();
    std::size_t named = 0; // after the job, before what it handed to the main queue
    desktop.dispatch.mainAsync([&] { named = saver->pathsBeingWritten().size(); });
    desktop.dispatch.runBackground();
    EXPECT_EQ(named, 1u);
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
}

// The order of two saves

// Bug: a save that was asked for earlier, but took longer, put back what a later one had hidden.
TEST_F(AnnotationSaverTest, ShowsWhatWasAskedForLastAlthoughAnEarlierSaveIsUnderWay)
{
    whileCompressing = [this] {
        items.push_back(item);
        save();
    };
    save();
    desktop.dispatch.runUntilIdle();
    ASSERT_EQ(shown.size(), 1u) << "what was overtaken never shows";
    EXPECT_EQ(itemsIn(shown[0]), 2u);
}

TEST_F(AnnotationSaverTest, MakesOnlyTheNewestOfTheSavesThatWait)
{
    save();
    save();
    items.push_back(item);
    save();
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 1u);
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(drawings(), 1u);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(itemsIn(shown[0]), 2u);
}

TEST_F(AnnotationSaverTest, WritesTheNewestSaveThatDoesNotFail)
{
    save();
    items.push_back(item);
    save();
    saveWithoutRoom();
    desktop.dispatch.runUntilIdle();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(itemsIn(shown[0]), 2u);
}

TEST_F(AnnotationSaverTest, WritesASaveThatWasOvertakenByOneThatFails)
{
    whileCompressing = [this] { saveWithoutRoom(); };
    save();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(shown.size(), 1u);
}

TEST_F(AnnotationSaverTest, WritesNothingAgainAfterASaveThatFails)
{
    const auto asking = desktop.files.listen([this](const std::filesystem::path& path, auto) {
        if (path == urls[0])
            saveWithoutRoom();
    });
    save();
    desktop.dispatch.runBackground();
    EXPECT_EQ(shown.size(), 1u);
}

TEST_F(AnnotationSaverTest, WritesAgainWhatIsAskedForDuringTheWriteItself)
{
    bool asked = false;
    const auto asking = desktop.files.listen([&](const std::filesystem::path& path, auto) {
        if (path != urls[0] || std::exchange(asked, true))
            return;
        items.push_back(item);
        save();
    });
    save();
    desktop.dispatch.runUntilIdle();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(itemsIn(shown[1]), 2u);
    EXPECT_THAT(written, ElementsAre(urls[0])) << "told once, at the end of both";
}

TEST_F(AnnotationSaverTest, TellsOfTheEndOfAllSavesOfAFileOnce)
{
    // Between the end of a job and the moment that the main queue hears of it
    whileCompressing = [this] { desktop.dispatch.mainAsync([this] { save(); }); };
    save();
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), ElementsAre(urls[0]));
    EXPECT_THAT(written, IsEmpty());
    desktop.dispatch.runBackground();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    EXPECT_THAT(written, ElementsAre(urls[0]));
    EXPECT_EQ(shown.size(), 2u);
}

TEST_F(AnnotationSaverTest, MayBeAskedForAnotherSaveWhenItTellsOfTheEndOfOne)
{
    saver->onWritten = [this](const auto& url, bool) {
        written.push_back(url);
        EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
        if (written.size() == 1)
            save();
    };
    save();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(written, ElementsAre(urls[0], urls[0]));
    EXPECT_EQ(shown.size(), 2u);
}

TEST_F(AnnotationSaverTest, ForgetsThePathEvenIfTheSaveFails)
{
    graphics.failNextDraw();
    save();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(saver->pathsBeingWritten(), IsEmpty());
    EXPECT_EQ(desktop.files.read(urls[0]), "original");
}

TEST_F(AnnotationSaverTest, TellsOfASaveThatFailsToo)
{
    saveWithoutRoom();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(written, ElementsAre(urls[0]));
    EXPECT_THAT(successes, ElementsAre(false));
}

TEST_F(AnnotationSaverTest, TellsThatTheFileShowsWhatWasAskedForLast)
{
    save();
    save();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(successes, ElementsAre(true));
}

TEST_F(AnnotationSaverTest, TellsThatOnlyAnOlderSaveIsInTheFile)
{
    save();
    saveWithoutRoom();
    desktop.dispatch.runUntilIdle();
    EXPECT_EQ(shown.size(), 1u);
    EXPECT_THAT(successes, ElementsAre(false));
}

TEST_F(AnnotationSaverTest, TellsThatTheFileCouldNotBeReplaced)
{
    save();
    desktop.files.makeReadOnly(urls[0].parent_path());
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(successes, ElementsAre(false));
}

// Bug: a save that waited for a thread when the program ended was dropped, and one that was under
// way lost its tool.
TEST_F(AnnotationSaverTest, WaitsForAllThatWasAskedFor)
{
    whileCompressing = [this] {
        items.push_back(item);
        save(0);
    };
    save(0);
    save(1);
    EXPECT_TRUE(saver->finishWriting(10s));
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 0u);
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(itemsIn(shown[0]), 2u);
    EXPECT_TRUE(drawingIn(urls[1]).has_value());
    EXPECT_THAT(written, IsEmpty()) << "the main queue does not run meanwhile";
}

TEST_F(AnnotationSaverTest, WaitsForNothingIfNothingWasAskedFor)
{
    desktop.dispatch.globalAsync(QualityOfService::userInitiated, [] { FAIL() << "of others"; });
    EXPECT_TRUE(saver->finishWriting(10s));
}

TEST_F(AnnotationSaverTest, WaitsNoLongerThanTheLimit)
{
    whileCompressing = [this] { desktop.clock.move(10s); };
    save(0);
    save(1);
    const auto start = desktop.clock.monotonicNow();
    EXPECT_FALSE(saver->finishWriting(10s));
    EXPECT_EQ(desktop.clock.monotonicNow() - start, 10s);
}

TEST_F(AnnotationSaverTest, TakesAPictureForWhichThereIsNoMemoryForASaveThatFails)
{
    // Bug: the program ended.
    whileCompressing = [] { throw std::bad_alloc(); };
    save();
    desktop.dispatch.runUntilIdle();
    EXPECT_THAT(successes, ElementsAre(false));
    EXPECT_EQ(desktop.files.read(urls[0]), "original");
    EXPECT_THAT(*desktop.files.list(optimized), testing::UnorderedElementsAreArray(urls));
}

TEST_F(AnnotationSaverTest, CompletesEverySaveAfterItsOwnEnd)
{
    whileCompressing = [this] {
        items.push_back(item);
        save();
        saver.reset();
    };
    save();
    desktop.dispatch.runUntilIdle();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_EQ(itemsIn(shown[0]), 2u);
    EXPECT_THAT(written, IsEmpty());
}

} // namespace
} // namespace tallowbay
