#include "hotkeys/HotkeyConfig.h"

#include "platform/headless/MemoryUserDefaults.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

using Dictionary = DefaultsValue::Dictionary;

class HotkeyConfigTest : public testing::Test {
protected:
    HotkeyConfig load() { return HotkeyConfig::load(defaults, "hotkeyOCR", fallback); }
    HotkeyConfig loadWith(const std::string& field, DefaultsValue value)
    {
        Dictionary fields = complete;
        fields[field] = std::move(value);
        defaults.set("hotkeyOCR", {fields});
        return load();
    }

    headless::MemoryUserDefaultsStore store;
    UserDefaults& defaults = store.standard();
    const HotkeyConfig fallback{7, 0x300, "Cmd+Shift+X"};
    const HotkeyConfig stored{31, 0x300, "Cmd+Shift+O"};
    const Dictionary complete{
        {"keyCode", {std::int64_t{31}}},
        {"modifiers", {std::int64_t{0x300}}},
        {"displayString", {"Cmd+Shift+O"}}};
};

TEST_F(HotkeyConfigTest, IsStoredAsADictionaryOfThreeTypedEntries)
{
    stored.save(defaults, "hotkeyOCR");
    EXPECT_EQ(defaults.value("hotkeyOCR"), DefaultsValue{complete});
}

TEST_F(HotkeyConfigTest, LoadsWhatWasSaved)
{
    const HotkeyConfig extreme{0xFFFFFFFF, 0xFFFFFFFF, "Ctrl+ü"};
    extreme.save(defaults, "hotkeyOCR");
    EXPECT_EQ(load(), extreme);
}

TEST_F(HotkeyConfigTest, IsTheFallbackWithoutAnEntry)
{
    EXPECT_EQ(load(), fallback);
}

TEST_F(HotkeyConfigTest, IsTheFallbackIfTheEntryIsNoDictionary)
{
    for (const DefaultsValue& value :
         {DefaultsValue{"Cmd+Shift+O"}, DefaultsValue{std::int64_t{31}}, DefaultsValue{true},
          DefaultsValue{1.5}}) {
        defaults.set("hotkeyOCR", value);
        EXPECT_EQ(load(), fallback);
    }
}

TEST_F(HotkeyConfigTest, IsTheFallbackIfAFieldIsMissing)
{
    for (const char* field : {"keyCode", "modifiers", "displayString"}) {
        Dictionary fields = complete;
        fields.erase(field);
        defaults.set("hotkeyOCR", {fields});
        EXPECT_EQ(load(), fallback) << field;
    }
}

TEST_F(HotkeyConfigTest, IsTheFallbackIfANumberIsWrittenAsText)
{
    EXPECT_EQ(loadWith("keyCode", {"31"}), fallback);
    EXPECT_EQ(loadWith("modifiers", {"768"}), fallback);
}

TEST_F(HotkeyConfigTest, IsTheFallbackIfANumberIsNoNumber)
{
    for (const char* field : {"keyCode", "modifiers"}) {
        EXPECT_EQ(loadWith(field, {true}), fallback);
        EXPECT_EQ(loadWith(field, {Dictionary{}}), fallback);
    }
}

TEST_F(HotkeyConfigTest, IsTheFallbackIfANumberDoesNotFit)
{
    for (const char* field : {"keyCode", "modifiers"}) {
        EXPECT_EQ(loadWith(field, {std::int64_t{-1}}), fallback);
        EXPECT_EQ(loadWith(field, {std::int64_t{0x100000000}}), fallback);
        EXPECT_EQ(loadWith(field, {7.5}), fallback);
        EXPECT_EQ(loadWith(field, {-1.0}), fallback);
        EXPECT_EQ(loadWith(field, {1e300}), fallback);
    }
}

TEST_F(HotkeyConfigTest, TakesAWholeNumberOfAnyKind)
{
    EXPECT_EQ(loadWith("keyCode", {31.0}), stored);
    EXPECT_EQ(loadWith("modifiers", {768.0}), stored);
}

TEST_F(HotkeyConfigTest, IsTheFallbackIfTheTextIsNoText)
{
    EXPECT_EQ(loadWith("displayString", {std::int64_t{7}}), fallback);
    EXPECT_EQ(loadWith("displayString", {true}), fallback);
}

TEST_F(HotkeyConfigTest, IgnoresFurtherEntries)
{
    EXPECT_EQ(loadWith("comment", {"mine"}), stored);
}

} // namespace
} // namespace tallowbay
