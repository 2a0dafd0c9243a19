#include "platform/qt/graphics/GraphicsFonts.h"

#include "platform/contract/TextMeasurerContract.h"
#include "platform/qt/graphics/TestApplication.h"

#include <QFontInfo>
#include <QFontMetricsF>

#include <gtest/gtest.h>

namespace tallowbay::qt {
namespace {

struct GraphicsFontsBackend {
    test::QtApplicationForFonts application;
    GraphicsFonts fonts;

    const TextMeasurer& measurer() { return fonts; }
};

class GraphicsFontsTest : public testing::Test {
protected:
    test::QtApplicationForFonts application;
    const GraphicsFonts fonts;
};

TEST_F(GraphicsFontsTest, IsTheFontThatTheWindowsAreDesignedFor)
{
    EXPECT_EQ(QFontInfo(interfaceFont({13, FontWeight::regular})).family(), "Inter");
}

// With hinting, sizes that follow each other can have the same width.
TEST_F(GraphicsFontsTest, IsNotHinted)
{
    EXPECT_EQ(interfaceFont({13, FontWeight::regular}).hintingPreference(), QFont::PreferNoHinting);
    EXPECT_EQ(
        fonts.scaled({13, FontWeight::regular}).font.hintingPreference(), QFont::PreferNoHinting);
}

// The same words were 78.1 x 21.8 points for a window and 76.9 x 19.4 points for a drawing.
TEST_F(GraphicsFontsTest, MeasuresWhatAWindowShows)
{
    const std::string words = "3 Screenshot(s) Ready";
    for (const FontWeight weight :
         {FontWeight::regular, FontWeight::medium, FontWeight::semibold}) {
        for (const int size : {11, 13, 15, 16, 22}) {
            const Font font{double(size), weight};
            const QFontMetricsF shown(interfaceFont(font));
            const Size measured = fonts.measure(words, font);
            EXPECT_NEAR(
                shown.horizontalAdvance(QString::fromStdString(words)), measured.width,
                measured.width / 200)
                << size;
            EXPECT_NEAR(shown.height(), measured.height, 1) << size;
        }
    }
}

TEST_F(GraphicsFontsTest, DrawsWithTheFontThatItMeasures)
{
    for (const double size : {3.0, 15.0, 16.3, 400.0}) {
        const auto [font, factor] = fonts.scaled({size, FontWeight::semibold});
        EXPECT_NEAR(
            QFontMetricsF(font).horizontalAdvance(QStringLiteral("Words")) * factor,
            fonts.measure("Words", {size, FontWeight::semibold}).width, size / 100)
            << size;
    }
}

} // namespace
} // namespace tallowbay::qt

namespace tallowbay::contract {

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, TextMeasurerContract, qt::GraphicsFontsBackend);

} // namespace tallowbay::contract
