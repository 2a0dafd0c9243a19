#include "hotkeys/RecordedHotkey.h"

#include "hotkeys/UpperCase.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using namespace eventFlag;

TEST(RecordedHotkeyTest, IgnoresAKeyWithoutControlOptionOrCommand)
{
    EXPECT_FALSE(recordedHotkey({0, 0}, "a"));
    EXPECT_FALSE(recordedHotkey({0, shift}, "a"));
    EXPECT_FALSE(recordedHotkey({96, shift}, ""));
}

TEST(RecordedHotkeyTest, TakesAKeyWithAnyOneOfThem)
{
    EXPECT_EQ(recordedHotkey({1, control}, "s"), (HotkeyConfig{1, 0x1000, "Ctrl+S"}));
    EXPECT_EQ(recordedHotkey({1, option}, "s"), (HotkeyConfig{1, 0x800, "Opt+S"}));
    EXPECT_EQ(recordedHotkey({1, command}, "s"), (HotkeyConfig{1, 0x100, "Cmd+S"}));
}

TEST(RecordedHotkeyTest, NamesTheModifiersInAFixedOrder)
{
    EXPECT_EQ(
        recordedHotkey({96, control | option | command | shift}, ""),
        (HotkeyConfig{96, 0x1B00, "Ctrl+Opt+Cmd+Shift+F5"}));
}

TEST(RecordedHotkeyTest, ShowsARecordedDefaultInItsOwnOrder)
{
    EXPECT_EQ(recordedHotkey({6, command | control}, "z"), (HotkeyConfig{6, 0x1100, "Ctrl+Cmd+Z"}));
}

TEST(RecordedHotkeyTest, MindsNoFlagsBeyondTheFourModifiers)
{
    const EventFlags capsLockAndMore = 1 << 16 | 1 << 21 | 1;
    EXPECT_EQ(
        recordedHotkey({31, command | shift | capsLockAndMore}, "O"),
        (HotkeyConfig{31, 0x300, "Cmd+Shift+O"}));
    EXPECT_FALSE(recordedHotkey({31, capsLockAndMore}, "o"));
}

TEST(RecordedHotkeyTest, CallsAKeyByWhatItTypesInCapitals)
{
    EXPECT_EQ(hotkeyKeyName(0, "a"), "A");
    EXPECT_EQ(hotkeyKeyName(18, "1"), "1");
    EXPECT_EQ(hotkeyKeyName(43, ","), ",");
    EXPECT_EQ(hotkeyKeyName(41, "ö"), "Ö");
    EXPECT_EQ(hotkeyKeyName(41, "ж"), "Ж");
    EXPECT_EQ(hotkeyKeyName(27, "ß"), "SS");
}

TEST(RecordedHotkeyTest, CallsAKeyThatTypesNothingPrintableByItsCode)
{
    EXPECT_EQ(hotkeyKeyName(42, ""), "Key42");
    EXPECT_EQ(hotkeyKeyName(53, "\x1B"), "Key53");
    EXPECT_EQ(hotkeyKeyName(42, "a\x01"), "Key42");
    EXPECT_EQ(hotkeyKeyName(42, std::string(1, '\0')), "Key42");
    EXPECT_EQ(hotkeyKeyName(42, "\x1F"), "Key42");
}

struct Name {
    KeyCode keyCode;
    const char* name;
};

class NamedKeyTest : public testing::TestWithParam<Name> { };

TEST_P(NamedKeyTest, HasItsNameWhateverItTypes)
{
    EXPECT_EQ(hotkeyKeyName(GetParam().keyCode, "x"), GetParam().name);
    EXPECT_EQ(hotkeyKeyName(GetParam().keyCode, ""), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    All, NamedKeyTest,
    testing::Values(
        Name{49, "Space"}, Name{36, "Return"}, Name{48, "Tab"}, Name{51, "Delete"},
        Name{117, "Fwd Del"}, Name{123, "Left"}, Name{124, "Right"}, Name{126, "Up"},
        Name{125, "Down"}, Name{115, "Home"}, Name{119, "End"}, Name{116, "PgUp"},
        Name{121, "PgDn"}, Name{122, "F1"}, Name{120, "F2"}, Name{99, "F3"}, Name{118, "F4"},
        Name{96, "F5"}, Name{97, "F6"}, Name{98, "F7"}, Name{100, "F8"}, Name{101, "F9"},
        Name{109, "F10"}, Name{103, "F11"}, Name{111, "F12"}),
    [](const auto& name) { return "Key" + std::to_string(name.param.keyCode); });

TEST(UpperCaseTest, LeavesWhatHasNoCapitalAsItIs)
{
    EXPECT_EQ(upperCase(""), "");
    EXPECT_EQ(upperCase("A1,€字😀"), "A1,€字😀");
}

TEST(UpperCaseTest, KnowsLettersOfEveryLength)
{
    EXPECT_EQ(upperCase("é"), "É");
    EXPECT_EQ(upperCase("ÿ"), "Ÿ");
    EXPECT_EQ(upperCase("ẁ"), "Ẁ");
    EXPECT_EQ(upperCase("𐐨"), "𐐀");
}

TEST(UpperCaseTest, KeepsBytesThatAreNoText)
{
    for (const char* broken : {"\xff", "\xc3", "a\x80", "\xe2\x82", "\xf0\x9f\x98", "\xc3q"})
        EXPECT_EQ(upperCase(broken).size(), std::string(broken).size());
    EXPECT_EQ(upperCase("\xc3q"), "\xc3Q");
}

} // namespace
} // namespace tallowbay
