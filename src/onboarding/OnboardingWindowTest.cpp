#include "onboarding/OnboardingWindow.h"

#include "capture/ScreenshotLocation.h"
#include "platform/headless/Desktop.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using testing::ElementsAre;

class OnboardingWindowTest : public testing::Test {
protected:
    // A window that was made just now.
    OnboardingWindow& open()
    {
        window = std::make_unique<OnboardingWindow>(desktop.platform(), views);
        window->onCompleted = [this] { ++completions; };
        window->show();
        return *window;
    }

    void setScreenshotPreference(const std::string& key, const std::string& value)
    {
        desktop.defaults.open("com.apple.screencapture")->set(key, {value});
    }

    bool remembered()
    {
        return desktop.defaults.standard().value("onboardingCompleted") == DefaultsValue{true};
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    int completions = 0;
    std::unique_ptr<OnboardingWindow> window;
};

TEST_F(OnboardingWindowTest, ComesToTheFrontWhenItIsShown)
{
    OnboardingWindow made(desktop.platform(), views);
    EXPECT_FALSE(made.visible());
    EXPECT_THAT(views.onboardingWindows.back()->journal, ElementsAre());
    made.show();
    EXPECT_TRUE(made.visible());
    EXPECT_THAT(views.onboardingWindows.back()->journal, ElementsAre("key and front"));
}

TEST_F(OnboardingWindowTest, ShowsTheThreeThingsThatTheProgramNeeds)
{
    std::vector<std::string> lines;
    for (const auto& step : open().steps())
        lines.push_back(step.title + ": " + step.description);
    EXPECT_THAT(
        lines,
        ElementsAre(
            "Screenshot Location: Screenshots are expected in ~/Desktop",
            "Enable Accessibility: Needed to detect paste actions",
            "Allow Screen Recording: Required for text extraction (OCR)"));
    EXPECT_EQ(window->heading(), "Get Tallowbay ready");
    EXPECT_EQ(window->buttonTitle(), "Start");
}

TEST_F(OnboardingWindowTest, TicksWhatIsThere)
{
    for (const auto& step : open().steps())
        EXPECT_TRUE(step.done) << step.title;
}

TEST_F(OnboardingWindowTest, NamesNoFolderWhereScreenshotsAreExpectedInSeveral)
{
    desktop.settings.screenshotPlaces = [] {
        return std::vector<ScreenshotPlace>{{"/home/u", false, ""}, {"/home/u/Shots", true, ""}};
    };
    EXPECT_EQ(open().steps()[0].description, "Screenshots of all usual tools are noticed");
    EXPECT_TRUE(open().steps()[0].done);
}

TEST_F(OnboardingWindowTest, NamesAFolderOutsideOfTheUsersHomeInFull)
{
    setScreenshotPreference("location", "/srv/pictures");
    EXPECT_EQ(open().steps()[0].description, "Screenshots are expected in /srv/pictures");
}

TEST_F(OnboardingWindowTest, WantsScreenshotsInAFolder)
{
    setScreenshotPreference("target", "clipboard");
    EXPECT_FALSE(open().steps()[0].done);
    EXPECT_EQ(window->steps()[0].description, "Screenshots must be saved to a folder");
}

TEST_F(OnboardingWindowTest, SaysWhyAPermissionIsMissing)
{
    desktop.permissions.refuseKeys(Permission::State::unavailable);
    desktop.permissions.refuseScreen();
    const auto& steps = open().steps();
    EXPECT_FALSE(steps[1].done);
    EXPECT_EQ(
        steps[1].description,
        "Needed to detect paste actions. The user has not agreed that keys are seen");
    EXPECT_FALSE(steps[2].done);
    EXPECT_EQ(
        steps[2].description,
        "Required for text extraction (OCR). The user has not agreed that the screen is seen");
}

TEST_F(OnboardingWindowTest, RemembersThatTheUserHasStartedTheProgram)
{
    open();
    window->onCompleted = [this] { EXPECT_TRUE(remembered()) << "before the program starts"; };
    EXPECT_FALSE(remembered());
    window->startTapped();
    EXPECT_TRUE(remembered());
}

TEST_F(OnboardingWindowTest, CompletesOnce)
{
    open().startTapped();
    window->startTapped();
    EXPECT_EQ(completions, 1);
}

TEST_F(OnboardingWindowTest, LetsTheProgramRunOnceItIsCompleted)
{
    open().startTapped();
    window.reset();
    desktop.dispatch.runMain();
    EXPECT_FALSE(desktop.application.ended());
}

TEST_F(OnboardingWindowTest, MayBeDestroyedByItsCompletion)
{
    open();
    window->onCompleted = [this] {
        window.reset();
        ++completions;
    };
    window->startTapped();
    EXPECT_EQ(completions, 1);
    EXPECT_FALSE(views.onboardingWindows.back()->alive);
}

TEST_F(OnboardingWindowTest, EndsTheProgramWhenItIsClosed)
{
    open();
    desktop.dispatch.runMain();
    EXPECT_FALSE(desktop.application.ended());
    window->windowClosed();
    desktop.dispatch.runMain();
    EXPECT_TRUE(desktop.application.ended());
    EXPECT_FALSE(window->visible());
    EXPECT_EQ(completions, 0);
    EXPECT_FALSE(remembered());
}

} // namespace
} // namespace tallowbay
