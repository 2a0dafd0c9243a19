#include "ui/ToastGate.h"

#include "platform/headless/Desktop.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ToastGateTest : public testing::Test {
protected:
    void show(const std::string& message)
    {
        gate.show(message);
        desktop.dispatch.runMain();
    }

    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    ToastPresenter toasts{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate gate{desktop.defaults.standard(), toasts};
};

TEST_F(ToastGateTest, ShowsToastsToAUserWhoNeverChose)
{
    show("Pasting...");
    EXPECT_THAT(views.messages(), ElementsAre("Pasting..."));
}

TEST_F(ToastGateTest, ShowsNothingToAUserWhoWantsNone)
{
    desktop.defaults.standard().set("toastsDisabled", {true});
    show("Pasting...");
    EXPECT_THAT(views.toasts, IsEmpty());
}

TEST_F(ToastGateTest, GoesByThePreferenceAsItIsAtEachToast)
{
    desktop.defaults.standard().set("toastsDisabled", {true});
    show("one");
    desktop.defaults.standard().set("toastsDisabled", {false});
    show("two");
    EXPECT_THAT(views.messages(), ElementsAre("two"));
}

} // namespace
} // namespace tallowbay
