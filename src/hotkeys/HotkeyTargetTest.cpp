#include "hotkeys/HotkeyTarget.h"

#include <gtest/gtest.h>

namespace tallowbay {
namespace {

struct TraitsRow {
    const char* name;
    HotkeyTarget target;
    std::uint32_t signature;
    std::uint32_t id;
    const char* key;
    HotkeyConfig config;
};

void PrintTo(const TraitsRow& row, std::ostream* out)
{
    *out << row.name;
}

class HotkeyTargetTest : public testing::TestWithParam<TraitsRow> { };

TEST_P(HotkeyTargetTest, HasItsOwnIdKeyAndDefault)
{
    const HotkeyTraits& traits = traitsOf(GetParam().target);
    EXPECT_EQ(traits.id, (HotkeyId{GetParam().signature, GetParam().id}));
    EXPECT_EQ(traits.defaultsKey, GetParam().key);
    EXPECT_EQ(traits.defaultConfig, GetParam().config);
}

INSTANTIATE_TEST_SUITE_P(
    All, HotkeyTargetTest,
    testing::Values(
        TraitsRow{
            "openClose",
            HotkeyTarget::openClose,
            0x5353414E,
            2,
            "hotkeyOpenClose",
            {49, 0x800, "Opt+Space"}},
        TraitsRow{"ocr", HotkeyTarget::ocr, 0x53534F58, 1, "hotkeyOCR", {7, 0x300, "Cmd+Shift+X"}},
        TraitsRow{
            "undoLast",
            HotkeyTarget::undoLast,
            0x5353554C,
            4,
            "hotkeyUndoLast",
            {6, 0x1100, "Cmd+Ctrl+Z"}},
        TraitsRow{
            "clearAll",
            HotkeyTarget::clearAll,
            0x5353434C,
            5,
            "hotkeyClearAll",
            {8, 0x1100, "Cmd+Ctrl+C"}}),
    [](const auto& row) { return row.param.name; });

TEST(HotkeyTargetsTest, StandInTheOrderOfTheSettings)
{
    EXPECT_EQ(
        hotkeyTargets,
        (std::array{
            HotkeyTarget::openClose, HotkeyTarget::ocr, HotkeyTarget::undoLast,
            HotkeyTarget::clearAll}));
}

} // namespace
} // namespace tallowbay
