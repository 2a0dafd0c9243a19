#include "app/PasteRest.h"

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

// A program that takes the first file of each paste has the keyboard.
class PasteRestTest : public testing::Test {
protected:
    PasteRestTest()
    {
        desktop.windowSystem.active = 5;
        desktop.windowSystem.classes[5] = "firefox-esr";
        desktop.pasteboard.writeFiles(files);
        pasteRest.onRunning = [this](bool runs) { tellsOfKeys = runs; };
    }

    void programAsks()
    {
        desktop.pasteboard.askForFiles();
        taken.push_back(desktop.pasteboard.given->at(0));
        desktop.dispatch.runMain();
    }
    void userPastes()
    {
        pasteRest.expectPaste();
        programAsks();
    }
    void programReads() { desktop.dispatch.advance(100ms); }
    void nextStep() { desktop.dispatch.advance(300ms); }

    const Paths files{"/a.png", "/b.png", "/c.png"};
    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    ToastPresenter toastPresenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), toastPresenter};
    Paths taken;
    int fired = 0;
    bool tellsOfKeys = false;
    PasteRest pasteRest{
        desktop.platform(), toasts,
        [this](const Paths& written) { desktop.pasteboard.writeFiles(written); },
        [this] { ++fired; }};
};

TEST_F(PasteRestTest, PastesTheRestOneByOneAndLeavesAllOnThePasteboard)
{
    userPastes();
    EXPECT_TRUE(tellsOfKeys);
    desktop.dispatch.advance(299ms);
    EXPECT_EQ(fired, 0);
    desktop.dispatch.advance(1ms);
    EXPECT_EQ(fired, 1);
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre("/b.png", "/c.png"));
    programAsks();
    nextStep();
    programAsks();
    EXPECT_EQ(taken, files);
    EXPECT_EQ(fired, 2);
    nextStep();
    EXPECT_EQ(desktop.pasteboard.files, files);
    EXPECT_FALSE(tellsOfKeys);
    EXPECT_EQ(desktop.console.lines.back(), ">>> Pasted one by one: 3 image(s)");
    desktop.dispatch.advance(1h);
    EXPECT_EQ(fired, 2);
    EXPECT_THAT(views.messages(), IsEmpty());
}

TEST_F(PasteRestTest, TakesSeveralQuestionsForOnePaste)
{
    userPastes();
    programAsks();
    nextStep();
    programAsks();
    programAsks();
    nextStep();
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre("/c.png"));
    EXPECT_EQ(fired, 2);
}

TEST_F(PasteRestTest, PastesNothingAfterAPasteIntoAnotherProgram)
{
    desktop.windowSystem.classes[5] = "Thunar";
    userPastes();
    nextStep();
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(desktop.pasteboard.files, files);
}

TEST_F(PasteRestTest, PastesNothingAfterASingleFile)
{
    desktop.pasteboard.writeFiles({"/a.png"});
    userPastes();
    nextStep();
    EXPECT_EQ(fired, 0);
    EXPECT_FALSE(pasteRest.running());
}

TEST_F(PasteRestTest, PastesNothingWhereNobodyHasPasted)
{
    programAsks();
    nextStep();
    EXPECT_EQ(fired, 0);

    pasteRest.expectPaste();
    desktop.dispatch.advance(5s);
    programAsks();
    nextStep();
    EXPECT_EQ(fired, 0) << "that was long ago";
}

TEST_F(PasteRestTest, PastesNothingWhereTheUserDoesNotWantIt)
{
    desktop.defaults.standard().set("pasteRestDisabled", {true});
    userPastes();
    nextStep();
    EXPECT_EQ(fired, 0);
}

TEST_F(PasteRestTest, EndsWithAnyKeyAndLeavesTheRestOnThePasteboard)
{
    userPastes();
    programReads();
    pasteRest.interrupt();
    EXPECT_FALSE(pasteRest.running());
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre("/b.png", "/c.png"));
    desktop.dispatch.advance(10s);
    EXPECT_EQ(fired, 0);
    EXPECT_THAT(views.messages(), ElementsAre("2 Screenshot(s) left — paste again"));

    userPastes();
    nextStep();
    EXPECT_EQ(fired, 1) << "the next paste goes on";
    programAsks();
    EXPECT_EQ(taken, files);
}

TEST_F(PasteRestTest, EndsWithAClick)
{
    userPastes();
    nextStep();
    programAsks();
    programReads();
    desktop.keyTap.click();
    desktop.dispatch.runMain();
    EXPECT_FALSE(pasteRest.running());
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre("/c.png"));
    desktop.dispatch.advance(10s);
    EXPECT_EQ(fired, 1);
}

TEST_F(PasteRestTest, ChangesNothingWhileTheProgramStillReads)
{
    userPastes();
    pasteRest.interrupt();
    desktop.dispatch.advance(99ms);
    EXPECT_EQ(desktop.pasteboard.files, files);
    programAsks();
    desktop.dispatch.advance(99ms);
    EXPECT_EQ(desktop.pasteboard.files, files) << "it has asked for another form";
    desktop.dispatch.advance(1ms);
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre("/b.png", "/c.png"));
    EXPECT_FALSE(pasteRest.running());
    EXPECT_EQ(fired, 0);
}

TEST_F(PasteRestTest, CountsThePasteThatIsOnItsWayWhenItEnds)
{
    userPastes();
    nextStep();
    pasteRest.interrupt();
    programAsks();
    programReads();
    EXPECT_FALSE(pasteRest.running());
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre("/c.png"));
    EXPECT_THAT(views.messages(), ElementsAre("1 Screenshot(s) left — paste again"));
    EXPECT_EQ(fired, 1);
}

TEST_F(PasteRestTest, WaitsNotLongForThePasteThatIsOnItsWayWhenItEnds)
{
    userPastes();
    nextStep();
    pasteRest.interrupt();
    desktop.dispatch.advance(299ms);
    pasteRest.interrupt();
    desktop.dispatch.advance(1ms);
    EXPECT_FALSE(pasteRest.running());
    EXPECT_THAT(desktop.pasteboard.files, ElementsAre("/b.png", "/c.png"));
    EXPECT_EQ(fired, 1);
}

TEST_F(PasteRestTest, BeginsAnewWithTheKeyThatEndsIt)
{
    userPastes();
    nextStep();
    pasteRest.interrupt();
    pasteRest.expectPaste();
    programAsks();
    programReads();
    programAsks();
    EXPECT_EQ(taken, files);
    EXPECT_FALSE(pasteRest.running()) << "that was the last one";
}

TEST_F(PasteRestTest, EndsInAnotherWindow)
{
    userPastes();
    desktop.windowSystem.active = 7;
    desktop.windowSystem.classes[7] = "firefox-esr";
    nextStep();
    EXPECT_EQ(fired, 0);
    EXPECT_FALSE(pasteRest.running());
    EXPECT_EQ(views.messages().size(), 1u);
}

TEST_F(PasteRestTest, LeavesWhatIsOnThePasteboardMeanwhile)
{
    userPastes();
    nextStep();
    desktop.pasteboard.copyTextElsewhere("text");
    desktop.dispatch.advance(10s);
    EXPECT_EQ(desktop.pasteboard.text, "text");
    EXPECT_EQ(fired, 1);
    EXPECT_FALSE(pasteRest.running());

    desktop.pasteboard.writeFiles(files);
    userPastes();
    desktop.pasteboard.copyTextElsewhere("other text");
    nextStep();
    EXPECT_EQ(desktop.pasteboard.text, "other text");
    EXPECT_EQ(fired, 1) << "it would paste what is no screenshot";
    EXPECT_THAT(views.messages(), IsEmpty()) << "nothing is left there";
}

TEST_F(PasteRestTest, EndsWhereTheProgramAsksForNoMore)
{
    userPastes();
    nextStep();
    desktop.dispatch.advance(3s);
    EXPECT_FALSE(pasteRest.running());
    EXPECT_EQ(fired, 1);
    EXPECT_THAT(views.messages(), ElementsAre("2 Screenshot(s) left — paste again"));
}

TEST_F(PasteRestTest, SaysNothingOfAKeyAfterTheLastFile)
{
    userPastes();
    nextStep();
    programAsks();
    nextStep();
    programAsks();
    programReads();
    pasteRest.interrupt();
    EXPECT_THAT(views.messages(), IsEmpty());
    EXPECT_EQ(desktop.pasteboard.files, files);
}

} // namespace
} // namespace tallowbay
