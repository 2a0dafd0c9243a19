#include "app/EditorOpener.h"

#include "app/ScreenshotBatch.h"
#include "editor/EditorSlot.h"
#include "editor/strip/SessionStore.h"
#include "editor/window/AnnotationWindow.h"
#include "platform/headless/Desktop.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Paths = std::vector<std::filesystem::path>;

class EditorOpenerTest : public testing::Test {
protected:
    EditorOpenerTest()
    {
        desktop.files.create(desktop.tools.pngquant);
        desktop.processes.install(desktop.tools.pngquant, [this](const auto& arguments) {
            desktop.files.create(arguments.at(3), *desktop.files.read(arguments.back()));
            return pngquantStatus;
        });
    }

    static std::filesystem::path file(char name)
    {
        return std::string("/home/u/Downloads/Tallowbay/optimized/") + name + ".png";
    }
    void createFile(char name)
    {
        desktop.files.create(file(name), *desktop.imageCodec.encodePng(Bitmap({20, 15})));
    }
    void add(const std::string& names) // to the batch
    {
        for (const char name : names) {
            createFile(name);
            batch.addToClipboard(file(name));
        }
    }
    void store(const std::string& names) // a saved strip; "|" is a divider
    {
        std::vector<SessionStore::Item> items;
        for (const char name : names) {
            if (name != '|')
                createFile(name);
            items.push_back(
                name == '|' ? SessionStore::Item{} : SessionStore::Item{file(name), true});
        }
        SessionStore::save(desktop.files, desktop.console, items);
    }

    void request(bool showSettings = false) { opener->openAnnotationWindow(showSettings); }
    void open()
    {
        request();
        settle();
        desktop.dispatch.advance(1s);
    }
    void settle() { desktop.dispatch.runUntilIdle(); }

    AnnotationWindow& window() { return *opener->window(); }
    std::string strip()
    {
        std::string text;
        for (const auto& slot : window().slots()) {
            text += slot ? window().url(*slot).stem().string() : "|";
            if (slot)
                text += window().cell(*slot).checked ? "+" : "-";
        }
        return text;
    }
    void draw()
    {
        window().canvas().setSize({496, 396});
        window().canvas().mouseDown({60, 60});
        window().canvas().mouseDragged({100, 100});
        window().canvas().mouseUp({100, 100});
    }

    // Of B, beside A: an edit that can be saved once its picture has come.
    void oweAnEdit()
    {
        add("AB");
        open();
        draw();
        settle();
        window().cellClicked(0);
        settle();
        window().cellClicked(1);
        window().undoAnnotation();
        window().redoAnnotation();
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    ToastPresenter presenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), presenter};
    EditorSlot slot;
    int pastes = 0;
    int pngquantStatus = 0;
    ScreenshotBatch batch{desktop.platform(), toasts, slot, [this] { ++pastes; }};
    std::unique_ptr<EditorOpener> opener =
        std::make_unique<EditorOpener>(desktop.platform(), views, toasts, batch, slot);
};

// The first time

TEST_F(EditorOpenerTest, ShowsALoaderBeforeItBuildsTheWindow)
{
    std::vector<std::size_t> editors; // at each turn of the main queue
    request();
    ASSERT_EQ(views.loaders.size(), 1u);
    EXPECT_THAT(views.loaders[0]->journal, ElementsAre("alpha 1", "front", "pulse"));
    EXPECT_EQ(views.loaders[0]->origin, (Point{960 - 44, 540 - 44}));
    desktop.dispatch.mainAsync([&] {
        editors.push_back(views.editors.size());
        desktop.dispatch.mainAsync([&] { editors.push_back(views.editors.size()); });
    });
    settle();
    EXPECT_THAT(editors, ElementsAre(0u, 1u)) << "two turns later";
}

TEST_F(EditorOpenerTest, HidesTheLoaderOnceTheEditorIsOnTheScreen)
{
    request();
    settle();
    EXPECT_TRUE(views.editors[0]->onScreen);
    EXPECT_FALSE(views.loaders[0]->pulses);
    EXPECT_TRUE(views.loaders[0]->onScreen);
    desktop.dispatch.advance(150ms);
    EXPECT_FALSE(views.loaders[0]->alive);
}

TEST_F(EditorOpenerTest, FillsTheSlot)
{
    EXPECT_EQ(slot.strip(), nullptr);
    open();
    EXPECT_EQ(slot.strip(), &window());
}

TEST_F(EditorOpenerTest, BuildsOneWindowForRequestsThatComeWhileItIsBuilt)
{
    add("A");
    request();
    request();
    desktop.dispatch.mainAsync([this] { request(); }); // between the two turns
    settle();
    EXPECT_EQ(views.editors.size(), 1u);
    EXPECT_EQ(views.loaders.size(), 1u);
    EXPECT_TRUE(views.editors[0]->onScreen);
    EXPECT_EQ(strip(), "A+");
}

TEST_F(EditorOpenerTest, BuildsNothingOnceItIsGone)
{
    request();
    opener.reset();
    settle();
    EXPECT_TRUE(views.editors.empty());
    EXPECT_FALSE(views.loaders[0]->alive);
}

TEST_F(EditorOpenerTest, MayGoInTheMiddleOfTheTwoTurns)
{
    request();
    desktop.dispatch.mainAsync([this] { opener.reset(); });
    settle();
    EXPECT_TRUE(views.editors.empty());
}

TEST_F(EditorOpenerTest, ShowsTheScreenshotsOfTheBatchCheckedAndTheLastSelected)
{
    add("ABC");
    open();
    EXPECT_EQ(strip(), "A+B+C+");
    EXPECT_EQ(window().selectedIndex(), 2u);
}

TEST_F(EditorOpenerTest, ShowsTheBatchBeforeTheRestoredScreenshots)
{
    store("XY|Z");
    add("ABC");
    open();
    EXPECT_EQ(strip(), "A+B+C+|X-Y-|Z-");
    EXPECT_EQ(window().url(window().selectedIndex()), file('C'));
    add("D");
    EXPECT_EQ(strip(), "A+B+C+D+|X-Y-|Z-") << "the batch goes on";
}

TEST_F(EditorOpenerTest, BeginsABatchAfterARestoreWithoutOne)
{
    store("XY");
    open();
    EXPECT_EQ(strip(), "X-Y-");
    add("A");
    EXPECT_EQ(strip(), "A+|X-Y-");
}

TEST_F(EditorOpenerTest, LeavesTheClipboardAloneWhenItOpens)
{
    add("AB");
    const auto count = desktop.pasteboard.changeCount();
    open();
    EXPECT_EQ(desktop.pasteboard.changeCount(), count);
}

// Again

TEST_F(EditorOpenerTest, ConfirmsAndClosesAnEditorThatIsOnTheScreen)
{
    add("AB");
    open();
    window().checkboxToggled(0);
    desktop.pasteboard.copyElsewhere({"/elsewhere"});
    request();
    EXPECT_TRUE(window().isClosing());
    EXPECT_EQ(desktop.pasteboard.files, Paths{file('B')});
    desktop.dispatch.advance(150ms);
    EXPECT_FALSE(views.editors[0]->onScreen);
}

TEST_F(EditorOpenerTest, ShowsTheSameWindowAgainWithoutALoader)
{
    add("A");
    open();
    draw();
    request();
    desktop.dispatch.advance(150ms);
    request();
    EXPECT_TRUE(views.editors[0]->onScreen);
    EXPECT_EQ(window().canvas().annotations().size(), 1u);
    EXPECT_EQ(views.editors.size(), 1u);
    EXPECT_EQ(views.loaders.size(), 1u);
}

TEST_F(EditorOpenerTest, ConfirmsOnceMoreOnARequestDuringTheFade)
{
    add("A");
    open();
    request();
    desktop.dispatch.advance(100ms);
    desktop.pasteboard.copyElsewhere({"/elsewhere"});
    request();
    EXPECT_EQ(desktop.pasteboard.files, Paths{file('A')});
    desktop.dispatch.advance(50ms);
    EXPECT_FALSE(views.editors[0]->onScreen) << "the first fade has ended";
}

TEST_F(EditorOpenerTest, NeverClosesTheEditorForItsSettings)
{
    open();
    request(true);
    EXPECT_FALSE(window().isClosing());
    EXPECT_TRUE(views.editors[0]->onScreen);
}

TEST_F(EditorOpenerTest, LetsAFadeEndThatTheSettingsWereAskedForIn)
{
    open();
    request();
    desktop.dispatch.advance(100ms);
    request(true);
    EXPECT_FALSE(window().isClosing());
    EXPECT_FALSE(views.editors[0]->ignoresMouseEvents);
    desktop.dispatch.advance(50ms);
    EXPECT_FALSE(views.editors[0]->onScreen);
    request();
    desktop.dispatch.advance(1s);
    EXPECT_TRUE(views.editors[0]->onScreen);
}

// The batch

TEST_F(EditorOpenerTest, PutsWhatIsCheckedOnThePasteboard)
{
    add("AB");
    open();
    window().checkboxToggled(0);
    EXPECT_EQ(desktop.pasteboard.files, Paths{file('B')});
}

TEST_F(EditorOpenerTest, HoldsAPasteUntilAnEditIsWritten)
{
    add("A");
    open();
    draw();
    batch.handlePaste();
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(pastes, 0);
    settle();
    EXPECT_EQ(desktop.pasteboard.files, Paths{file('A')});
    EXPECT_EQ(pastes, 1);
}

TEST_F(EditorOpenerTest, DropsAPasteForAnEditThatCannotBeWritten)
{
    add("A");
    open();
    pngquantStatus = 1;
    draw();
    batch.handlePaste();
    settle();
    EXPECT_EQ(pastes, 0);
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    EXPECT_EQ(desktop.files.read(file('A')), *desktop.imageCodec.encodePng(Bitmap({20, 15})));
}

TEST_F(EditorOpenerTest, HoldsAPasteForAnEditWhosePictureIsOnItsWay)
{
    oweAnEdit();
    batch.handlePaste();
    EXPECT_EQ(pastes, 0);
    settle();
    EXPECT_EQ(pastes, 1);
    EXPECT_EQ(desktop.pasteboard.files, (Paths{file('A'), file('B')}));
}

TEST_F(EditorOpenerTest, FiresAPasteForAnEditWhoseScreenshotIsRemoved)
{
    oweAnEdit();
    batch.handlePaste();
    window().removeExpiredURLs({file('B')});
    EXPECT_EQ(pastes, 1);
    EXPECT_EQ(desktop.pasteboard.files, Paths{file('A')});
}

TEST_F(EditorOpenerTest, BeginsABatchAfterAPaste)
{
    add("AB");
    open();
    batch.handlePaste();
    add("C");
    EXPECT_EQ(strip(), "C+|A-B-");
    EXPECT_EQ(desktop.pasteboard.files, Paths{file('C')});
}

TEST_F(EditorOpenerTest, TakesBackTheLastScreenshotByItsCheckMark)
{
    add("AB");
    open();
    batch.undoLastScreenshot();
    EXPECT_EQ(strip(), "A+B-");
    EXPECT_EQ(desktop.pasteboard.files, Paths{file('A')});
    batch.clearAllScreenshots();
    EXPECT_EQ(strip(), "A-B-");
    EXPECT_THAT(desktop.pasteboard.files, IsEmpty());
    add("C");
    EXPECT_EQ(strip(), "C+|A-B-");
}

} // namespace
} // namespace tallowbay
