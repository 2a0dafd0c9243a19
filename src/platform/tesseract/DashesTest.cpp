#include "platform/tesseract/Dashes.h"

#include "platform/headless/VirtualTime.h"
#include "platform/tesseract/LineFinder.h"
#include "platform/tesseract/TesseractRecognizer.h"
#include "platform/tesseract/TestText.h"

#include <gmock/gmock.h>

#include <string_view>

namespace tallowbay::tesseract {
namespace {

// Letters are blocks as high as a small letter, ten rows, and as wide; those that are narrow have
// four columns. All dashes are hyphens to the engine.
class DashesTest : public testing::Test {
protected:
    int hyphen = 5;
    int enDash = 9;
    bool broken = false; // an en dash is two hyphens that touch
    int narrow = 4;
    int otherSize = 10; // the height of a small letter from the second line on
    int letter = 10;
    int step = 0; // from one to the next, where it is the same for all
    int pitch = 0; // what the line finder says of it

    // What the text is in the end. A dash of the text stands for one of its length in the picture.
    std::string settled(const std::string& text) { return settled(std::vector{text}).at(0); }

    std::vector<std::string> settled(const std::vector<std::string>& texts)
    {
        Plane ink({800, 40 * static_cast<int>(texts.size())});
        std::vector<SymbolLine> lines;
        for (const std::string& text : texts)
            lines.push_back(written(text, ink, 40 * static_cast<int>(lines.size())));
        settleDashes(ink, lines);
        std::vector<std::string> result;
        for (const SymbolLine& line : lines) {
            result.emplace_back();
            for (const Symbol& symbol : line.symbols)
                result.back() += (symbol.spaceBefore ? " " : "") + symbol.text;
        }
        return result;
    }

private:
    SymbolLine written(const std::string& text, Plane& ink, int top)
    {
        SymbolLine line{
            {{top + 10, top + 30},
             {},
             top + 25,
             double(top > 0 ? otherSize : 10),
             double(pitch),
             {}},
            {}};
        int x = 4;
        bool space = false;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t bytes = text[at] < 0 ? 3 : 1;
            const std::string one = text.substr(at, bytes);
            at += bytes;
            const int width = widthOf(one);
            if (one != " ") {
                const Span rows = isDash(one) ? Span{top + 19, top + 21} : Span{top + 15, top + 25};
                for (int y = rows.begin; y < rows.end; ++y)
                    std::fill(ink.row(y) + x, ink.row(y) + x + width, 255);
                if (broken && one == "–")
                    ink.row(top + 19)[x + width / 2] = ink.row(top + 20)[x + width / 2] = 120;
                line.symbols.push_back(
                    {isDash(one) && one != "—" ? "-" : one, x + width / 2.0, space, 0.9});
            }
            space = one == " ";
            x += step > 0 ? step : width + 2;
        }
        line.line.runs = inkColumns(ink, {{0, ink.size.width}, line.line.rows});
        return line;
    }

    static bool isDash(const std::string& one) { return one == "-" || one == "–" || one == "—"; }

    int widthOf(const std::string& one) const
    {
        if (isDash(one))
            return one == "-" ? hyphen : one == "–" ? enDash : 18;
        return std::string_view("Iijlrtf ").find(one[0]) != std::string_view::npos ? narrow
                                                                                   : letter;
    }
};

TEST_F(DashesTest, AreEnDashesBetweenNumbersNamesAndWords)
{
    EXPECT_EQ(settled("in 1998–2003"), "in 1998–2003");
    EXPECT_EQ(settled("the Oslo–Bergen line"), "the Oslo–Bergen line");
    EXPECT_EQ(settled("it is – so far – a list"), "it is – so far – a list");
    EXPECT_EQ(settled("– one of a list"), "– one of a list");
}

TEST_F(DashesTest, AreHyphensUnlessTheyAreLongForCertain)
{
    hyphen = 7;
    EXPECT_EQ(
        settled("in 1998-2003 or - at last - New-Ulm"), "in 1998-2003 or - at last - New-Ulm");
}

TEST_F(DashesTest, AreHyphensInsideOfAWordUnlessTheyAreVeryLong)
{
    enDash = 8;
    EXPECT_EQ(settled("the north–south line"), "the north-south line");
    EXPECT_EQ(settled("in 1998– or so on"), "in 1998- or so on");
    enDash = 10;
    EXPECT_EQ(settled("the north–south line"), "the north–south line");
}

TEST_F(DashesTest, AreNoSignsOfOptionsOrNumbers)
{
    for (const char* text :
         {"list –all –o file", "at –5 or (–3) else", "list ––all files", "it–>next is lost",
          "less <– that"}) {
        std::string read = text;
        for (auto at = read.find("–"); at != std::string::npos; at = read.find("–"))
            read.replace(at, 3, "-");
        EXPECT_EQ(settled(text), read);
    }
}

TEST_F(DashesTest, AreHyphensWhereTwoOfThemTouch)
{
    broken = true;
    EXPECT_EQ(settled("it is – so far – a list"), "it is - so far - a list");
}

TEST_F(DashesTest, AreMinusesInACalculation)
{
    EXPECT_EQ(settled("what is left = 7 – 3"), "what is left = 7 - 3");
    EXPECT_EQ(settled("what is left of 7 – 3 + 2"), "what is left of 7 - 3 + 2");
}

TEST_F(DashesTest, AreHyphensBesideOthersAlmostAsLong)
{
    hyphen = 7;
    EXPECT_EQ(settled("in 1998–2003 the well-set line"), "in 1998-2003 the well-set line");
    enDash = 10;
    EXPECT_EQ(settled("in 1998–2003 the well-set line"), "in 1998–2003 the well-set line");
}

TEST_F(DashesTest, AreEmDashesOnlyWhereTheyAreThatLong)
{
    EXPECT_EQ(settled("at last—or never"), "at last—or never");
}

TEST_F(DashesTest, AreHyphensWhereAllLettersHaveOneWidthAndAHyphenIsAsLong)
{
    step = 14;
    EXPECT_EQ(settled("in 1998–2003 or – at last"), "in 1998-2003 or - at last");
}

TEST_F(DashesTest, AreHyphensInsideOfSmallWordsWhereTwoOfThemTouch)
{
    letter = 5;
    narrow = 2;
    enDash = 6;
    EXPECT_EQ(settled("one of north–south – or so"), "one of north-south – or so");
}

TEST_F(DashesTest, AreMeasuredByTheLettersOfOtherLinesWhereTheirOwnAreFew)
{
    EXPECT_EQ(settled("5–7"), "5-7");
    EXPECT_THAT(
        settled(std::vector<std::string>{"5–7", "it is one line"}),
        testing::ElementsAre("5–7", "it is one line"));
    otherSize = 12;
    EXPECT_EQ(settled(std::vector<std::string>{"5–7", "it is one line"}).at(0), "5-7");
}

TEST_F(DashesTest, FillTheirCellWhereAllCharactersHaveOneWidth)
{
    pitch = step = 12;
    enDash = 10;
    EXPECT_EQ(settled("in 1998–2003 or – at last"), "in 1998-2003 or - at last");
    enDash = 12;
    EXPECT_EQ(settled("in lines 1 – 3 or more"), "in lines 1 – 3 or more");
}

// As the engine reads them, in real typefaces.
class DashesOfTypefacesTest : public testing::Test {
protected:
    std::string dashesOf(const std::vector<std::string>& lines, const TextDrawing::Look& look)
    {
        std::string text;
        recognizer.recognize(
            TextDrawing::draw(lines, look), {},
            RecognitionReply([&text](const RecognitionResult& result) {
                for (const auto& observation : std::get<TextObservations>(result))
                    text += observation.candidates.at(0).string;
            }));
        std::string dashes;
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == '-')
                dashes += '-';
            else if (text.compare(at, 3, "–") == 0 || text.compare(at, 3, "—") == 0)
                dashes += text.substr(at, 3);
        }
        return dashes;
    }

    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    TesseractRecognizer recognizer{dispatch};
};

TEST_F(DashesOfTypefacesTest, EnDashesAreTold)
{
    for (const char* typeface : {"DejaVu Sans", "Noto Sans", "Liberation Serif", "DejaVu Serif"}) {
        for (const int pixels : {13, 16, 18})
            EXPECT_EQ(
                dashesOf(
                    {"The office is open 10–17 hours", "in winter – if at all – so far"},
                    TextDrawing::greyOnDark(typeface, pixels)),
                "–––")
                << typeface << " " << pixels;
    }
}

TEST_F(DashesOfTypefacesTest, HyphensStay)
{
    for (const char* typeface :
         {"Liberation Sans", "Liberation Sans Narrow", "Inter", "Cantarell", "P052"}) {
        for (const int pixels : {11, 13, 15, 18})
            EXPECT_EQ(
                dashesOf(
                    {"the well-known man of 2004-11-28 went home",
                     "in Baden-Baden - so they tell - till ten"},
                    {typeface, pixels}),
                "------")
                << typeface << " " << pixels;
    }
}

TEST_F(DashesOfTypefacesTest, WideHyphensOfATypewriterStay)
{
    for (const int pixels : {11, 13, 16})
        EXPECT_EQ(
            dashesOf(
                {"list files of 2004-11-28 in a well-lit hall", "it is left - if at all - so far"},
                {"Nimbus Mono PS", pixels}),
            "-----")
            << pixels;
}

TEST_F(DashesOfTypefacesTest, OneLineHasThemAll)
{
    EXPECT_EQ(dashesOf({"so-so in 1998–2003—or never—till now"}, {"Liberation Sans", 16}), "-–——");
}

} // namespace
} // namespace tallowbay::tesseract
