#include "editor/window/EditorLook.h"
#include "support/EditorFixture.h"

#include <cmath>

namespace tallowbay {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// What happens while pictures are on their way.
class WindowPictureTest : public test::EditorTest {
protected:
    bool hasPicture() const { return window->canvas().backgroundImage() != nullptr; }

    // Eight screenshots, of which these slots are seen one after the other: whose thumbnails come,
    // in which order.
    std::string readInOrder(const std::vector<std::pair<std::size_t, std::size_t>>& seen)
    {
        createFiles("ABCDEFGH");
        build();
        for (const char letter : std::string("ABCDEFGH"))
            window->addURL(file(letter));
        for (const auto& [first, last] : seen)
            window->visibleSlotsChanged(first, last);
        std::string came;
        while (desktop.dispatch.backgroundCount() > 0) {
            editor().changedCells.clear();
            desktop.dispatch.runBackground();
            for (const std::size_t index : editor().changedCells)
                came += nameOf(index);
        }
        return came;
    }

    // A screenshot with one item, which is selected and whose picture has not come.
    void returnToEdited()
    {
        take("AB");
        click('A');
        settle();
        draw();
        settle();
        click('B');
        settle();
        writesEnded.clear();
        clipboards.clear();
        click('A');
    }

    // An edit of that screenshot, which can be saved once the picture has come.
    void oweAnEdit()
    {
        returnToEdited();
        window->undoAnnotation();
        window->redoAnnotation();
    }
};

TEST_F(WindowPictureTest, ReadsThePictureOffTheMainQueue)
{
    createFiles("A");
    build();
    window->addURL(file('A'));
    EXPECT_FALSE(hasPicture());
    ASSERT_GT(desktop.dispatch.backgroundCount(), 0u);
    EXPECT_EQ(desktop.dispatch.backgroundQuality(0), QualityOfService::userInteractive);
    settle();
    EXPECT_TRUE(hasPicture());
}

TEST_F(WindowPictureTest, TakesNoDrawingUntilThePictureIsThere)
{
    createFiles("A");
    build();
    window->addURL(file('A'));
    draw();
    EXPECT_THAT(items(), IsEmpty());
    settle();
    draw();
    EXPECT_EQ(items().size(), 1u);
}

TEST_F(WindowPictureTest, ShowsOnlyThePictureThatWasAskedForLast)
{
    take("ABC");
    desktop.files.create(file('A'), *desktop.imageCodec.encodePng(Bitmap({10, 10})));
    desktop.files.create(file('B'), *desktop.imageCodec.encodePng(Bitmap({20, 20})));
    click('A');
    click('B');
    while (desktop.dispatch.backgroundCount() > 0) { // the older answer comes last
        desktop.dispatch.runBackground(desktop.dispatch.backgroundCount() - 1);
        if (hasPicture()) {
            EXPECT_EQ(window->canvas().backgroundImage()->size().width, 20);
        }
    }
    EXPECT_EQ(window->canvas().backgroundImage()->size().width, 20);
}

TEST_F(WindowPictureTest, ReadsNoPictureThatIsNoLongerWanted)
{
    take("AB");
    click('A');
    desktop.files.create(file('A'), "no picture");
    click('B');
    settle();
    EXPECT_THAT(views.messages(), IsEmpty());
}

TEST_F(WindowPictureTest, ReadsThePictureAnewAtEverySelection)
{
    take("AB");
    desktop.files.create(file('B'), *desktop.imageCodec.encodePng(Bitmap({30, 30})));
    click('B');
    settle();
    EXPECT_EQ(window->canvas().backgroundImage()->size().width, 30);
}

TEST_F(WindowPictureTest, SaysThatAPictureCannotBeLoadedAndKeepsTheScreenshot)
{
    take("A");
    desktop.files.create(file('B'), "no picture");
    build();
    window->addURL(file('B'));
    settle();
    EXPECT_THAT(views.messages(), ElementsAre("Could not load image"));
    EXPECT_FALSE(hasPicture());
    EXPECT_THAT(strip(), testing::HasSubstr("*B+"));
    draw();
    EXPECT_THAT(items(), IsEmpty());
}

TEST_F(WindowPictureTest, DropsThePictureOfTheScreenshotBeforeAtOnce)
{
    take("AB");
    click('A');
    EXPECT_FALSE(hasPicture());
}

TEST_F(WindowPictureTest, PreviewsTheThumbnailUntilThePictureIsThere)
{
    take("AB");
    EXPECT_FALSE(window->canvasPreview());
    click('A');
    EXPECT_EQ(window->canvasPreview(), window->cell(indexOf('A')).thumbnail);
    EXPECT_TRUE(window->canvasPreview());
    const int looks = editor().looks;
    settle();
    EXPECT_FALSE(window->canvasPreview());
    EXPECT_GT(editor().looks, looks);
}

TEST_F(WindowPictureTest, PreviewsAThumbnailThatComesBeforeThePicture)
{
    createFiles("AB");
    build();
    window->addURL(file('B'));
    window->addURL(file('A'));
    desktop.dispatch.runBackground(); // nobody waits for the picture of B any more
    desktop.dispatch.runBackground(); // the picture of A; now thumbnails are read
    click('A');
    int looks = editor().looks;
    EXPECT_FALSE(window->canvasPreview());
    desktop.dispatch.runBackground(); // the thumbnail of B
    EXPECT_TRUE(window->cell(indexOf('B')).thumbnail);
    EXPECT_EQ(editor().looks, looks);
    desktop.dispatch.runBackground(); // that of A
    EXPECT_TRUE(window->canvasPreview());
    EXPECT_EQ(editor().looks, looks + 1);
}

TEST_F(WindowPictureTest, LooksAtNoThumbnailOfAnotherScreenshotForItsPreview)
{
    createFiles("AB");
    build();
    window->addURL(file('A'));
    desktop.dispatch.runBackground();
    desktop.dispatch.runBackground(); // A has its thumbnail
    window->addURL(file('B'));
    desktop.dispatch.runBackground(); // its picture; its thumbnail is under way
    click('A');
    ASSERT_TRUE(window->canvasPreview());
    const int looks = editor().looks;
    desktop.dispatch.runBackground();
    EXPECT_TRUE(window->cell(indexOf('B')).thumbnail);
    EXPECT_EQ(editor().looks, looks);
}

// Edits without a picture

TEST_F(WindowPictureTest, SavesAnUndoOnceThePictureIsThere)
{
    take("AB");
    click('A');
    settle();
    draw(0);
    draw(1);
    settle();
    click('B');
    settle();
    click('A');
    const auto before = flattened().size();
    window->undoAnnotation();
    EXPECT_TRUE(window->isBeingWritten(file('A')));
    settle();
    ASSERT_EQ(flattened().size(), before + 1);
    EXPECT_EQ(flattened().back(), 1u);
    EXPECT_FALSE(window->isBeingWritten(file('A')));
}

TEST_F(WindowPictureTest, SavesARedoAlsoIfAnotherScreenshotIsShownBeforeThePictureIsThere)
{
    oweAnEdit();
    const auto before = flattened().size();
    click('B');
    EXPECT_TRUE(window->isBeingWritten(file('A')));
    settle();
    EXPECT_EQ(flattened().size(), before + 1);
    EXPECT_FALSE(window->isBeingWritten(file('A')));
    EXPECT_THAT(writesEnded, ElementsAre(true));
}

TEST_F(WindowPictureTest, SavesTheLastStateThatWasNotEmpty)
{
    oweAnEdit();
    window->undoAnnotation();
    const auto before = flattened().size();
    settle();
    EXPECT_EQ(flattened().size(), before + 1) << "as it would have with the picture";
    EXPECT_EQ(flattened().back(), 1u);
    EXPECT_FALSE(window->isBeingWritten(file('A')));
}

TEST_F(WindowPictureTest, SavesWhatWasAskedForLastWhicheverPictureComesFirst)
{
    take("AB");
    click('A');
    settle();
    draw(0);
    draw(1);
    draw(2);
    settle();
    for (int visit = 0; visit < 2; ++visit) { // whose pictures do not come yet
        click('A');
        window->undoAnnotation();
        click('B');
    }
    while (const auto jobs = desktop.dispatch.backgroundCount())
        desktop.dispatch.runBackground(jobs - 1);
    EXPECT_EQ(flattened().back(), 1u);
    EXPECT_FALSE(window->isBeingWritten(file('A')));
}

TEST_F(WindowPictureTest, LeavesNoOlderEditToComeAfterANewerOne)
{
    take("AB");
    click('A');
    settle();
    draw(0);
    draw(1);
    settle();
    click('B');
    settle();
    click('A');
    window->undoAnnotation();
    click('B'); // what is owed waits for a picture
    click('A');
    desktop.dispatch.runBackground(desktop.dispatch.backgroundCount() - 1);
    ASSERT_TRUE(hasPicture());
    window->redoAnnotation();
    settle();
    EXPECT_EQ(flattened().back(), 2u);
}

TEST_F(WindowPictureTest, WritesAgainWhatCouldNotBeWritten)
{
    take("AB");
    draw();
    desktop.offscreenGraphics.failNextDraw();
    settle();
    EXPECT_THAT(flattened(), IsEmpty());
    click('A');
    settle();
    EXPECT_THAT(flattened(), ElementsAre(1u));
}

TEST_F(WindowPictureTest, TellsThatAnEditIsLostWhosePictureCannotBeRead)
{
    oweAnEdit();
    desktop.files.create(file('A'), "no picture");
    settle();
    EXPECT_FALSE(window->isBeingWritten(file('A')));
    EXPECT_THAT(writesEnded, ElementsAre(false));
}

TEST_F(WindowPictureTest, TellsThatAnEditIsLostWhosePictureCannotBeReadLater)
{
    oweAnEdit();
    desktop.files.create(file('A'), "no picture");
    click('B');
    settle();
    EXPECT_FALSE(window->isBeingWritten(file('A')));
    EXPECT_THAT(writesEnded, ElementsAre(false));
}

TEST_F(WindowPictureTest, BringsNoScreenshotBackThatWasLeftAndIsRemoved)
{
    oweAnEdit();
    click('B');
    const auto before = flattened().size();
    window->removeExpiredURLs({file('A')});
    EXPECT_THAT(writesEnded, ElementsAre(true));
    EXPECT_FALSE(window->isBeingWritten(file('A')));
    settle();
    EXPECT_EQ(flattened().size(), before);
}

TEST_F(WindowPictureTest, TellsThatNothingIsOwedForAScreenshotThatIsRemoved)
{
    oweAnEdit();
    const auto before = flattened().size();
    window->removeExpiredURLs({file('A')});
    EXPECT_THAT(writesEnded, ElementsAre(true));
    EXPECT_FALSE(window->isBeingWritten(file('A')));
    settle();
    EXPECT_EQ(flattened().size(), before);
}

TEST_F(WindowPictureTest, WritesWhatIsOwedWhenTheProgramEnds)
{
    oweAnEdit();
    const auto before = flattened().size();
    window->finishWriting(std::chrono::seconds(1));
    EXPECT_EQ(flattened().size(), before + 1);
    EXPECT_EQ(flattened().back(), 1u);
}

TEST_F(WindowPictureTest, WritesWhatIsOwedToScreenshotsThatWereLeftWhenTheProgramEnds)
{
    oweAnEdit();
    click('B');
    const auto before = flattened().size();
    window->finishWriting(std::chrono::seconds(1));
    EXPECT_EQ(flattened().size(), before + 1);
    EXPECT_EQ(flattened().back(), 1u);
}

TEST_F(WindowPictureTest, KeepsItemsOverThePictureThoughTheCanvasChangesBeforeItIsThere)
{
    returnToEdited();
    window->canvas().setSize({96 + 800, 96 + 600}); // forty times the picture's size
    window->undoAnnotation();
    window->redoAnnotation();
    settle();
    EXPECT_EQ(items().at(0).rect, (Rect{{48 + 24, 48 + 24}, {80, 80}}));
    EXPECT_EQ(
        desktop.offscreenGraphics.drawings().back().lines.back(),
        "fill rect(0.6 0.6 2 2) color(1 0.8 0 0.35)");
}

// Thumbnails

TEST_F(WindowPictureTest, ReadsThumbnailsOfTheSizeOfTheWell)
{
    desktop.files.create(file('A'), *desktop.imageCodec.encodePng(Bitmap({200, 150})));
    build();
    window->addURL(file('A'));
    settle();
    const Image thumbnail = window->cell(0).thumbnail;
    ASSERT_TRUE(thumbnail);
    EXPECT_EQ(thumbnail->size().height, imageWellSize.height);
    EXPECT_LE(thumbnail->size().width, imageWellSize.width);
}

TEST_F(WindowPictureTest, ReadsThumbnailsForTheScaleOfTheScreen)
{
    desktop.files.create(file('A'), *desktop.imageCodec.encodePng(Bitmap({800, 800})));
    build();
    window->addURL(file('A'));
    window->scaleChanged(1.5);
    settle();
    const int side = static_cast<int>(std::ceil(imageWellSize.height * 1.5));
    EXPECT_EQ(window->cell(0).thumbnail->size(), (PixelSize{side, side}));
}

TEST_F(WindowPictureTest, ReadsThumbnailsAfterThePicture)
{
    createFiles("A");
    build();
    window->addURL(file('A'));
    EXPECT_EQ(desktop.dispatch.backgroundCount(), 1u);
    desktop.dispatch.runBackground();
    EXPECT_TRUE(hasPicture());
    EXPECT_FALSE(window->cell(0).thumbnail);
    editor().changedCells.clear();
    settle();
    EXPECT_TRUE(window->cell(0).thumbnail);
    EXPECT_THAT(editor().changedCells, ElementsAre(0u));
}

TEST_F(WindowPictureTest, ReadsThumbnailsNearestToWhatIsSeenFirst)
{
    EXPECT_EQ(readInOrder({{3, 4}}), "DECFBGAH");
}

TEST_F(WindowPictureTest, ReadsThumbnailsByWhatIsSeenAtLast)
{
    EXPECT_EQ(readInOrder({{7, 7}, {0, 4}, {3, 4}}), "DECFBGAH");
}

TEST_F(WindowPictureTest, ReadsFewerThumbnailsFirstWhenLessIsSeen)
{
    EXPECT_EQ(readInOrder({{7, 7}, {3, 7}, {3, 4}}), "DECFBGAH");
}

TEST_F(WindowPictureTest, ReadsTheThumbnailAnewOnceAnEditIsWritten)
{
    take("A");
    const Image before = window->cell(0).thumbnail;
    draw();
    settle();
    EXPECT_NE(window->cell(0).thumbnail, before);
}

TEST_F(WindowPictureTest, LeavesAllWorkBehindWhenItGoes)
{
    createFiles("AB");
    build();
    window->addURL(file('A'));
    window->addURL(file('B'));
    desktop.dispatch.runBackground();
    window.reset();
    settle();
    EXPECT_FALSE(editor().logic);
}

// In memory there is the picture on the canvas, and no other.
TEST_F(WindowPictureTest, GoesWithItsScreenshotOnceItIsSaved)
{
    take("AB");
    click('A');
    settle();
    const std::weak_ptr<const Bitmap> picture = window->canvas().backgroundImage();
    draw();
    settle();
    EXPECT_FALSE(picture.expired());
    click('B');
    settle();
    EXPECT_TRUE(picture.expired());
}

TEST_F(WindowPictureTest, TellsNobodyOfTheTextThatIsSavedAtQuit)
{
    take("A");
    typeText("draft");
    clipboards.clear();
    window->finishWriting(std::chrono::seconds(1));
    EXPECT_THAT(clipboards, IsEmpty());
    EXPECT_EQ(items().size(), 1u);
}

} // namespace
} // namespace tallowbay
