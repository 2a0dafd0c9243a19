#include "ui/ToastGate.h"

#include "platform/headless/Desktop.h"
#include "ui/ToastWindow.h"

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
    ToastPresenter toasts{desktop.dispatch, desktop.screens, desktop.textMeasurer, desktop.toasts};
    ToastGate gate{desktop.defaults.standard(), toasts};
};

TEST_F(ToastGateTest, ShowsToastsToAUserWhoNeverChose)
{
    show("Pasting...");
    EXPECT_THAT(desktop.toasts.messages(), ElementsAre("Pasting..."));
}

TEST_F(ToastGateTest, ShowsNothingToAUserWhoWantsNone)
{
    desktop.defaults.standard().set("toastsDisabled", {true});
    show("Pasting...");
    EXPECT_THAT(desktop.toasts.made, IsEmpty());
}

TEST_F(ToastGateTest, GoesByThePreferenceAsItIsAtEachToast)
{
    desktop.defaults.standard().set("toastsDisabled", {true});
    show("one");
    desktop.defaults.standard().set("toastsDisabled", {false});
    show("two");
    EXPECT_THAT(desktop.toasts.messages(), ElementsAre("two"));
}

} // namespace
} // namespace tallowbay
