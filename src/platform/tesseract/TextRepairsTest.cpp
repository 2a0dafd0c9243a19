#include "platform/tesseract/TextRepairs.h"

#include <gtest/gtest.h>

namespace tallowbay::tesseract {
namespace {

std::vector<std::string> repaired(std::vector<std::string> lines, bool isCode = false)
{
    repairScreenText(lines, std::vector<bool>(lines.size(), isCode));
    return lines;
}

using Lines = std::vector<std::string>;

TEST(TextRepairsTest, MakesQuotesStraightBesideStraightOnes)
{
    EXPECT_EQ(repaired({"“Why\" not", "‘a' b"}), (Lines{"\"Why\" not", "'a' b"}));
}

TEST(TextRepairsTest, KeepsTypographicQuotesWhereAllAre)
{
    EXPECT_EQ(repaired({"“Why not?” it’s"}), (Lines{"“Why not?” it’s"}));
}

TEST(TextRepairsTest, MakesQuotesInCodeStraight)
{
    EXPECT_EQ(repaired({"print(“a”, ‘b’)"}, true), (Lines{"print(\"a\", 'b')"}));
}

TEST(TextRepairsTest, TakesAPoundAmongHexadecimalDigitsForAnF)
{
    EXPECT_EQ(repaired({"0x4£ a££0 0x££, £0e4c2"}, true), (Lines{"0x4f aff0 0xff, f0e4c2"}));
    EXPECT_EQ(repaired({"cost £5, £20 or £5b"}, true), (Lines{"cost £5, £20 or £5b"}));
    EXPECT_EQ(repaired({"a£0"}), (Lines{"a£0"}));
}

TEST(TextRepairsTest, ReadsTheBytesOfADumpAsFigures)
{
    EXPECT_EQ(
        repaired({"O00001f0: OO ff S2 Ff  Qa 8c 00 0o |..R.|"}, true),
        (Lines{"000001f0: 00 ff 52 ff  0a 8c 00 00 |..R.|"}));
    EXPECT_EQ(
        repaired({"FFOO 4BOC D0Of 00S8 AOA2 FC31"}, true),
        (Lines{"FF00 4B0C D00F 0058 A0A2 FC31"}));
}

TEST(TextRepairsTest, TakesNothingElseForADump)
{
    const Lines code{
        "OO = 4 + So;", "OO 12 34 SO", "OF SO AD BE DO OO", "AS OF 10 20 OO CD at so many places"};
    EXPECT_EQ(repaired(code, true), code);
    EXPECT_EQ(repaired({"OO ff S2 Ff 4a 8c 00"}), (Lines{"OO ff S2 Ff 4a 8c 00"}));
}

TEST(TextRepairsTest, KnowsTheNamesOfKeys)
{
    EXPECT_EQ(
        repaired({"Ctri+H", "Ctr+Shift+S", "Ctril+P", "Ctrl+V", "Fll", "Fil", "F1l", "F5"}),
        (Lines{"Ctrl+H", "Ctrl+Shift+S", "Ctrl+P", "Ctrl+V", "F11", "F11", "F11", "F5"}));
}

TEST(TextRepairsTest, LeavesOtherWordsAlone)
{
    const Lines words{"Film", "Fly", "Control", "allList", "a | B", "Center+x"};
    EXPECT_EQ(repaired(words), words);
}

TEST(TextRepairsTest, TakesALoneBarBeforeAWordForTheWordI)
{
    EXPECT_EQ(
        repaired({"\"| would rather", "| think so"}), (Lines{"\"I would rather", "I think so"}));
}

} // namespace
} // namespace tallowbay::tesseract
