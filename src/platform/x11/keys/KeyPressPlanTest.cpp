#include "platform/x11/keys/KeyPressPlan.h"

#include "platform/x11/keys/TestKeymap.h"

#include <gmock/gmock.h>

#include <xcb/xproto.h>

namespace tallowbay::x11 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr HardwareKey v = 55;
constexpr HardwareKey ctrl = 37;
constexpr HardwareKey rightCtrl = 105;
constexpr HardwareKey shift = 50;
constexpr HardwareKey alt = 64;
constexpr HardwareKey super = 133;
constexpr HardwareKey levelShift = 108;
constexpr HardwareKey a = 38;
constexpr std::uint8_t control = XCB_MOD_MASK_CONTROL;

class KeyPressPlanTest : public testing::Test {
protected:
    KeyboardLayout us = testLayout("us");

    KeyPressPlan paste(const KeyboardMoment& now)
    {
        const auto plan = planKeyPress(us, now, keyCode::v, control);
        EXPECT_TRUE(plan);
        return plan.value_or(KeyPressPlan{});
    }
};

TEST_F(KeyPressPlanTest, PressesTheModifierAndTheKey)
{
    const KeyPressPlan plan = paste({});
    EXPECT_THAT(plan.release, IsEmpty());
    EXPECT_THAT(plan.press, ElementsAre(ctrl, v));
    EXPECT_EQ(plan.undo, 0);
}

TEST_F(KeyPressPlanTest, PressesOnlyTheKeyWhileItsModifierIsHeld)
{
    for (const HardwareKey held : {ctrl, rightCtrl}) {
        const KeyPressPlan plan = paste({0, 0, {held}});
        EXPECT_THAT(plan.release, IsEmpty());
        EXPECT_THAT(plan.press, ElementsAre(v));
    }
}

TEST_F(KeyPressPlanTest, ReleasesOtherModifiersAndLeavesOtherKeysAlone)
{
    const KeyPressPlan plan = paste({0, 0, {a, shift, alt, super}});
    EXPECT_THAT(plan.release, ElementsAre(shift, alt, super));
    EXPECT_THAT(plan.press, ElementsAre(ctrl, v));
}

TEST_F(KeyPressPlanTest, ReleasesTheKeyItselfBeforeItIsPressedAnew)
{
    const KeyPressPlan plan = paste({0, 0, {ctrl, v}});
    EXPECT_THAT(plan.release, ElementsAre(v));
    EXPECT_THAT(plan.press, ElementsAre(v));
}

TEST_F(KeyPressPlanTest, ReleasesAKeyThatShiftsLevels)
{
    us = testLayout("de");
    EXPECT_THAT(paste({0, 0, {levelShift}}).release, ElementsAre(levelShift));
}

TEST_F(KeyPressPlanTest, UndoesWhatIsLatchedOrLockedExceptCapsLockAndNumLock)
{
    EXPECT_EQ(
        paste({0, XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_5, {}}).undo,
        XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_5);
    EXPECT_EQ(paste({0, XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2, {}}).undo, 0);
}

TEST_F(KeyPressPlanTest, UsesAWantedModifierThatIsLatchedOrLocked)
{
    const KeyPressPlan plan = paste({0, control, {}});
    EXPECT_EQ(plan.undo, 0);
    EXPECT_THAT(plan.press, ElementsAre(v));
}

TEST_F(KeyPressPlanTest, PressesSeveralModifiers)
{
    const auto plan = planKeyPress(us, {}, keyCode::v, control | XCB_MOD_MASK_SHIFT);
    ASSERT_TRUE(plan);
    EXPECT_THAT(plan->press, ElementsAre(shift, ctrl, v));
}

TEST_F(KeyPressPlanTest, DoesNothingWhereNoKeyHasTheCode)
{
    EXPECT_FALSE(planKeyPress(us, {}, 1000, control));
}

TEST_F(KeyPressPlanTest, DoesNothingWhereNoKeySetsTheModifier)
{
    EXPECT_FALSE(planKeyPress(KeyboardLayout(), {}, keyCode::v, control));
    EXPECT_TRUE(planKeyPress(KeyboardLayout(), {}, keyCode::v, 0));
}

} // namespace
} // namespace tallowbay::x11
