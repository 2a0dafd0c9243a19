#include "platform/x11/keys/KeyboardLayout.h"

#include "platform/x11/keys/TestKeymap.h"

#include <gmock/gmock.h>

#include <set>
#include <string>
#include <vector>

#include <xcb/xproto.h>

using namespace tallowbay::x11;
namespace keyCode = tallowbay::keyCode;

namespace {

constexpr HardwareKey placeOfV = 55;
constexpr HardwareKey placeOfPeriod = 60;
constexpr HardwareKey insertKey = 118;

} // namespace

TEST(KeyboardLayoutTest, UsKeysHaveTheCodesOfTheirPlaces)
{
    const KeyboardLayout us = testLayout("us");
    for (const VirtualKey& key : virtualKeys()) {
        EXPECT_EQ(us.code(key.hardware, 0), key.code) << int(key.hardware);
        EXPECT_EQ(us.key(key.code, 0), key.hardware) << key.code;
    }
}

TEST(KeyboardLayoutTest, VIsTheKeyThatTypesIt)
{
    EXPECT_EQ(testLayout("de").key(keyCode::v, 0), placeOfV);
    EXPECT_EQ(testLayout("fr").key(keyCode::v, 0), placeOfV);
    EXPECT_EQ(testLayout("us", "dvorak").key(keyCode::v, 0), placeOfPeriod);
    EXPECT_EQ(testLayout("us", "dvorak").code(placeOfPeriod, 0), keyCode::v);
    EXPECT_NE(testLayout("us", "dvorak").code(placeOfV, 0), keyCode::v);
}

TEST(KeyboardLayoutTest, LettersMoveWithTheLayout)
{
    const KeyboardLayout fr = testLayout("fr");
    EXPECT_EQ(fr.code(24, 0), 0u); // "a" stands where the US have their "q"
    EXPECT_EQ(fr.code(38, 0), 12u);
    const KeyboardLayout de = testLayout("de");
    EXPECT_EQ(de.code(29, 0), 6u); // "z" and "y" change places
    EXPECT_EQ(de.code(52, 0), 16u);
}

TEST(KeyboardLayoutTest, PlacesCountWhereNoKeyTypesLatinLetters)
{
    const KeyboardLayout ru = testLayout("ru");
    EXPECT_EQ(ru.key(keyCode::v, 0), placeOfV);
    EXPECT_EQ(ru.code(placeOfV, 0), keyCode::v);
}

TEST(KeyboardLayoutTest, ACyrillicGroupTakesItsLettersFromTheOtherGroup)
{
    EXPECT_EQ(testLayout("us,ru").key(keyCode::v, 1), placeOfV);
    EXPECT_EQ(testLayout("ru,us", ",dvorak").key(keyCode::v, 0), placeOfPeriod);
    EXPECT_EQ(testLayout("ru,us", ",dvorak").key(keyCode::v, 1), placeOfPeriod);
}

TEST(KeyboardLayoutTest, EachLatinGroupHasItsOwnV)
{
    const KeyboardLayout both = testLayout("us,us", ",dvorak");
    EXPECT_EQ(both.key(keyCode::v, 0), placeOfV);
    EXPECT_EQ(both.key(keyCode::v, 1), placeOfPeriod);
    EXPECT_NE(both.code(placeOfPeriod, 0), keyCode::v);
    EXPECT_NE(both.code(placeOfV, 1), keyCode::v);
}

TEST(KeyboardLayoutTest, AGroupBeyondTheLastWrapsAround)
{
    const KeyboardLayout both = testLayout("us,us", ",dvorak");
    EXPECT_EQ(both.key(keyCode::v, 2), placeOfV);
    EXPECT_EQ(both.key(keyCode::v, 3), placeOfPeriod);
}

TEST(KeyboardLayoutTest, EveryKeyKeepsACodeOfItsOwn)
{
    for (const auto& [name, variant] : std::vector<std::pair<std::string, std::string>>{
             {"us", ""},
             {"de", ""},
             {"fr", ""},
             {"us", "dvorak"},
             {"us", "colemak"},
             {"fr", "bepo"},
             {"ru", ""},
             {"gr", ""}}) {
        const KeyboardLayout keys = testLayout(name, variant);
        std::set<tallowbay::KeyCode> codes;
        for (const VirtualKey& key : virtualKeys()) {
            const auto code = keys.code(key.hardware, 0);
            ASSERT_TRUE(code) << name << variant << " key " << int(key.hardware);
            EXPECT_TRUE(codes.insert(*code).second) << name << variant << " code " << *code;
        }
    }
}

TEST(KeyboardLayoutTest, OtherKeysStayAtTheirPlaces)
{
    for (const char* name : {"us", "de", "fr", "ru"})
        EXPECT_EQ(testLayout(name).code(insertKey, 0), keyCode::insert) << name;
}

TEST(KeyboardLayoutTest, KnowsTheModifiersThatAKeySets)
{
    const KeyboardLayout us = testLayout("us");
    EXPECT_EQ(us.modifiers(37, 0), XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(us.modifiers(105, 0), XCB_MOD_MASK_CONTROL);
    EXPECT_EQ(us.modifiers(50, 0), XCB_MOD_MASK_SHIFT);
    EXPECT_EQ(us.modifiers(62, 0), XCB_MOD_MASK_SHIFT);
    EXPECT_EQ(us.modifiers(64, 0), XCB_MOD_MASK_1);
    EXPECT_EQ(us.modifiers(108, 0), XCB_MOD_MASK_1);
    EXPECT_EQ(us.modifiers(133, 0), XCB_MOD_MASK_4);
    EXPECT_EQ(us.modifiers(66, 0), XCB_MOD_MASK_LOCK);
    EXPECT_EQ(us.modifiers(77, 0), XCB_MOD_MASK_2);
    EXPECT_EQ(us.modifiers(placeOfV, 0), 0);
    EXPECT_EQ(testLayout("de").modifiers(108, 0), XCB_MOD_MASK_5);
    EXPECT_EQ(testLayout("us,de").modifiers(108, 0), XCB_MOD_MASK_1);
    EXPECT_EQ(testLayout("us,de").modifiers(108, 1), XCB_MOD_MASK_5);
}

TEST(KeyboardLayoutTest, FindsTheKeyThatSetsAModifier)
{
    EXPECT_EQ(testLayout("us").modifierKey(XCB_MOD_MASK_CONTROL, 0), 37);
    EXPECT_EQ(testLayout("us").modifierKey(XCB_MOD_MASK_SHIFT, 0), 50);
    EXPECT_EQ(testLayout("us", "", "ctrl:swapcaps").modifierKey(XCB_MOD_MASK_CONTROL, 0), 66);
    EXPECT_EQ(testLayout("us").modifierKey(XCB_MOD_MASK_3, 0), std::nullopt);
    EXPECT_EQ(testLayout("us").modifierKey(0, 0), std::nullopt);
}

TEST(KeyboardLayoutTest, PlacesCountOnAKeyboardOfWhichNothingIsKnown)
{
    const KeyboardLayout unknown;
    for (const VirtualKey& key : virtualKeys())
        EXPECT_EQ(unknown.code(key.hardware, 3), key.code);
    EXPECT_EQ(unknown.modifierKey(XCB_MOD_MASK_CONTROL, 0), std::nullopt);
}

TEST(KeyboardLayoutTest, UnknownKeysHaveNoCode)
{
    EXPECT_EQ(testLayout("us").code(0, 0), std::nullopt);
    EXPECT_EQ(testLayout("us").code(254, 0), std::nullopt);
    EXPECT_EQ(testLayout("us").key(1000, 0), std::nullopt);
}
