#include "ui/ToastWindow.h"

#include "platform/headless/Desktop.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class ToastWindowTest : public testing::Test {
protected:
    const headless::ToastRecord& show(const std::string& message)
    {
        presenter.show(message);
        desktop.dispatch.runMain();
        return *views.toasts.back();
    }

    // One message after the other, each that much later.
    void showMany(int count, std::chrono::milliseconds apart)
    {
        for (int i = 1; i <= count; ++i) {
            presenter.show(std::to_string(i) + " Screenshot(s) Ready");
            desktop.dispatch.advance(apart);
            most = std::max(most, seen().size());
        }
    }

    // What the toasts say that are on the screen now, the lowest first.
    std::vector<std::string> seen() const
    {
        std::vector<std::string> messages;
        for (const auto& toast : views.toasts)
            if (toast->onScreen)
                messages.push_back(toast->content.message);
        return messages;
    }

    std::size_t most = 0; // toasts at the same time
    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    ToastPresenter presenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
};

TEST_F(ToastWindowTest, IsMadeOnTheMainQueueAndNotInTheCall)
{
    presenter.show("3 Screenshot(s) Ready");
    EXPECT_TRUE(views.toasts.empty());
    desktop.dispatch.runMain();
    EXPECT_EQ(views.messages(), std::vector<std::string>{"3 Screenshot(s) Ready"});
}

TEST_F(ToastWindowTest, HasTheLookOfAToast)
{
    const auto& toast = show("Pasting...").content;
    EXPECT_EQ(toast.font, (Font{15, FontWeight::semibold}));
    EXPECT_EQ(toast.cornerRadius, 12);
    EXPECT_EQ(static_cast<int>(toast.level), 25);
}

TEST_F(ToastWindowTest, IsAsWideAsItsTextAnd48Points)
{
    const std::string message(30, 'x'); // 30 x 7.5 points
    EXPECT_EQ(show(message).content.frame, (Rect{{960 - 273.0 / 2, 540 - 24}, {273, 48}}));
}

TEST_F(ToastWindowTest, IsAtLeast220PointsWide)
{
    EXPECT_EQ(show("OK").content.frame, (Rect{{960 - 110, 516}, {220, 48}}));
}

TEST_F(ToastWindowTest, IsAtMost480PointsWide)
{
    EXPECT_EQ(show(std::string(200, 'x')).content.frame, (Rect{{960 - 240, 516}, {480, 48}}));
}

TEST_F(ToastWindowTest, HasOneLineAlsoWhereTheMessageHasSeveral)
{
    const auto& toast = show("what happened and why,\nin another sentence").content;
    EXPECT_EQ(toast.message, "what happened and why, in another sentence");
    EXPECT_EQ(toast.frame.size, (Size{42 * 7.5 + 48, 48}));
}

TEST_F(ToastWindowTest, IsCentredOnASmallScreen)
{
    desktop.screens.mainSize = Size{1000, 500};
    EXPECT_EQ(show("OK").content.frame.origin, (Point{500 - 110, 250 - 24}));
}

TEST_F(ToastWindowTest, AssumesAScreenWhereThereIsNone)
{
    desktop.screens.mainSize = std::nullopt;
    EXPECT_EQ(show("OK").content.frame.origin, (Point{720 - 110, 450 - 24}));
}

TEST_F(ToastWindowTest, FadesInStaysAndFadesOut)
{
    const auto& toast = show("OK");
    EXPECT_THAT(toast.journal, ElementsAre("alpha 0", "front", "animate to 1 in 150 ms"));
    desktop.dispatch.advance(949ms);
    EXPECT_EQ(toast.journal.size(), 3u);
    desktop.dispatch.advance(1ms); // 150 ms and 800 ms
    EXPECT_EQ(toast.journal.back(), "animate to 0 in 300 ms");
    desktop.dispatch.advance(299ms);
    EXPECT_TRUE(toast.onScreen);
    desktop.dispatch.advance(1ms);
    EXPECT_EQ(toast.journal.back(), "close");
    EXPECT_FALSE(toast.alive);
}

TEST_F(ToastWindowTest, LeavesAnEarlierToastWhereItIs)
{
    const auto& first = show("1 Screenshot(s) Ready");
    desktop.dispatch.advance(200ms);
    const auto& second = show("2 Screenshot(s) Ready");
    EXPECT_TRUE(first.onScreen);
    EXPECT_TRUE(second.onScreen);
    EXPECT_EQ(first.content.frame, second.content.frame);
    desktop.dispatch.advance(1050ms);
    EXPECT_FALSE(first.alive);
    EXPECT_TRUE(second.onScreen);
    desktop.dispatch.advance(200ms);
    EXPECT_FALSE(second.alive);
}

TEST_F(ToastWindowTest, HasItsOwnTimeAlsoWhereSeveralComeTogether)
{
    showMany(4, 0ms);
    ASSERT_EQ(views.toasts.size(), 4u);
    desktop.dispatch.advance(1249ms);
    EXPECT_EQ(seen().size(), 4u);
    desktop.dispatch.advance(1ms);
    EXPECT_EQ(seen().size(), 0u);
}

// 2,000 screenshots at once brought 989 windows.
TEST_F(ToastWindowTest, IsOneOfFewHoweverManyComeAtOnce)
{
    showMany(2000, 30ms);
    EXPECT_LE(most, 5u);
    EXPECT_LT(views.toasts.size(), 500u);
    desktop.dispatch.advance(150ms);
    EXPECT_EQ(seen().back(), "2000 Screenshot(s) Ready");
    desktop.dispatch.advance(1250ms);
    EXPECT_THAT(seen(), IsEmpty());
}

TEST_F(ToastWindowTest, IsNotMadeIfItsSuccessorWouldCoverItWhole)
{
    showMany(100, 0ms);
    EXPECT_THAT(
        seen(),
        ElementsAre(
            "1 Screenshot(s) Ready", "2 Screenshot(s) Ready", "3 Screenshot(s) Ready",
            "4 Screenshot(s) Ready"));
    desktop.dispatch.advance(150ms);
    EXPECT_THAT(
        seen(),
        ElementsAre("3 Screenshot(s) Ready", "4 Screenshot(s) Ready", "100 Screenshot(s) Ready"));
    EXPECT_EQ(views.toasts.size(), 5u);
}

TEST_F(ToastWindowTest, IsMadeIfItsSuccessorIsNarrower)
{
    showMany(4, 0ms);
    presenter.show("Compression failed — screenshot skipped");
    presenter.show("5 Screenshot(s) Ready");
    presenter.show("6 Screenshot(s) Ready");
    desktop.dispatch.advance(150ms);
    const auto messages = seen();
    ASSERT_GE(messages.size(), 2u);
    EXPECT_EQ(messages[messages.size() - 2], "Compression failed — screenshot skipped");
    EXPECT_EQ(messages.back(), "6 Screenshot(s) Ready");
}

TEST_F(ToastWindowTest, StaysItsTimeWhereItsSuccessorsAreNarrower)
{
    const auto& wide = show("Compression failed — screenshot skipped");
    showMany(40, 30ms);
    EXPECT_TRUE(wide.onScreen);
    desktop.dispatch.advance(50ms);
    EXPECT_FALSE(wide.alive);
}

TEST_F(ToastWindowTest, ComesAtOnceAgainWhenThoseBeforeHaveGone)
{
    showMany(20, 30ms);
    desktop.dispatch.advance(2s);
    const auto made = views.toasts.size();
    showMany(4, 0ms);
    EXPECT_EQ(views.toasts.size(), made + 4);
}

TEST_F(ToastWindowTest, NeverComesBeforeAnOlderOneThatWaits)
{
    showMany(4, 0ms);
    desktop.dispatch.advance(1200ms);
    showMany(3, 30ms); // the first four leave meanwhile
    desktop.dispatch.advance(1s);
    EXPECT_EQ(views.messages().back(), "3 Screenshot(s) Ready");
}

TEST_F(ToastWindowTest, MayOutliveItsPresenterInTheQueue)
{
    auto shortLived = std::make_unique<ToastPresenter>(
        desktop.dispatch, desktop.screens, desktop.textMeasurer, views);
    shortLived->show("shown");
    desktop.dispatch.runMain();
    shortLived->show("never shown");
    shortLived.reset();
    desktop.dispatch.advance(2s);
    EXPECT_EQ(views.messages(), std::vector<std::string>{"shown"});
    EXPECT_FALSE(views.toasts.front()->alive);
}

} // namespace
} // namespace tallowbay
