#include "hotkeys/SystemShortcuts.h"

#include <gtest/gtest.h>

#include <string>

namespace tallowbay {
namespace {

struct ShortcutRow {
    const char* combination;
    KeyCode keyCode;
    HotkeyModifiers modifiers;
};

void PrintTo(const ShortcutRow& row, std::ostream* out)
{
    *out << row.combination;
}

constexpr ShortcutRow rows[] = {
    {"Cmd+Space", 49, 0x100},     {"Cmd+Tab", 48, 0x100},     {"Cmd+Shift+Tab", 48, 0x300},
    {"Cmd+Shift+3", 20, 0x300},   {"Cmd+Shift+4", 21, 0x300}, {"Cmd+Shift+5", 23, 0x300},
    {"Cmd+Shift+6", 22, 0x300},   {"Opt+Cmd+Esc", 53, 0x900}, {"Opt+Cmd+D", 2, 0x900},
    {"Opt+Cmd+Space", 49, 0x900}, {"Ctrl+Space", 49, 0x1000}, {"Ctrl+Shift+Space", 49, 0x1200},
    {"Cmd+A", 0, 0x100},          {"Cmd+B", 11, 0x100},       {"Cmd+C", 8, 0x100},
    {"Cmd+D", 2, 0x100},          {"Cmd+E", 14, 0x100},       {"Cmd+F", 3, 0x100},
    {"Cmd+G", 5, 0x100},          {"Cmd+Shift+G", 5, 0x300},  {"Cmd+H", 4, 0x100},
    {"Cmd+I", 34, 0x100},         {"Cmd+J", 38, 0x100},       {"Cmd+K", 40, 0x100},
    {"Cmd+L", 37, 0x100},         {"Cmd+M", 46, 0x100},       {"Cmd+N", 45, 0x100},
    {"Cmd+O", 31, 0x100},         {"Cmd+P", 35, 0x100},       {"Cmd+Q", 12, 0x100},
    {"Cmd+R", 15, 0x100},         {"Cmd+S", 1, 0x100},        {"Cmd+T", 17, 0x100},
    {"Cmd+U", 32, 0x100},         {"Cmd+V", 9, 0x100},        {"Cmd+W", 13, 0x100},
    {"Cmd+X", 7, 0x100},          {"Cmd+Y", 16, 0x100},       {"Cmd+Z", 6, 0x100},
    {"Cmd+Shift+Z", 6, 0x300},    {"Cmd+Delete", 51, 0x100},  {"Cmd+,", 43, 0x100},
};

class SystemShortcutTest : public testing::TestWithParam<ShortcutRow> { };

TEST_P(SystemShortcutTest, Conflicts)
{
    EXPECT_TRUE(conflictsWithSystemShortcut(GetParam().keyCode, GetParam().modifiers));
}

TEST_P(SystemShortcutTest, DoesNotConflictWithAnotherModifierAdded)
{
    for (const HotkeyModifiers added : {0x400u, 0x10000u})
        EXPECT_FALSE(conflictsWithSystemShortcut(GetParam().keyCode, GetParam().modifiers | added));
    EXPECT_FALSE(conflictsWithSystemShortcut(GetParam().keyCode, 0));
}

INSTANTIATE_TEST_SUITE_P(All, SystemShortcutTest, testing::ValuesIn(rows));

TEST(SystemShortcutsTest, AreFortyTwoAndNoMore)
{
    EXPECT_EQ(std::size(rows), 42u);
    std::size_t conflicts = 0;
    for (KeyCode keyCode = 0; keyCode < 256; ++keyCode) {
        for (HotkeyModifiers modifiers = 0; modifiers < 0x2000; modifiers += 0x100)
            conflicts += conflictsWithSystemShortcut(keyCode, modifiers) ? 1 : 0;
    }
    EXPECT_EQ(conflicts, 42u);
}

TEST(SystemShortcutsTest, LeaveTheDefaultHotkeysAlone)
{
    EXPECT_FALSE(conflictsWithSystemShortcut(49, 0x800));
    EXPECT_FALSE(conflictsWithSystemShortcut(7, 0x300));
    EXPECT_FALSE(conflictsWithSystemShortcut(6, 0x1100));
    EXPECT_FALSE(conflictsWithSystemShortcut(8, 0x1100));
}

} // namespace
} // namespace tallowbay
