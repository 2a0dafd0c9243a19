#include "editor/CanvasFixture.h"

#include <cmath>

namespace tallowbay {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

class CanvasTextTest : public CanvasTest {
protected:
    CanvasTextTest() { window.tool = AnnotationTool::text; }

    void type(Point at, const std::string& text)
    {
        canvas.mouseDown(at);
        canvas.mouseUp(at);
        view.typed = text;
    }
};

TEST_F(CanvasTextTest, OpensAFieldAtTheClick)
{
    canvas.setAnnotations({highlightAt({{60, 60}, {20, 20}})});
    canvas.mouseDown({70, 70});
    canvas.mouseUp({70, 70});
    window.color = systemRed;
    canvas.mouseDown({200, 150});
    const TextFieldLook expected{{{200, 140}, {200, 24}},
                                 {16, FontWeight::semibold},
                                 systemRed,
                                 {0, 0, 0, 0.6},
                                 "Type here...",
                                 {1, 1, 1, 0.85}};
    EXPECT_THAT(view.shownFields, ElementsAre(expected));
    EXPECT_TRUE(canvas.hasActiveTextField());
    EXPECT_EQ(canvas.state().selectedAnnotationIndex, std::nullopt);
    EXPECT_EQ(canvas.state().dragStart, std::nullopt);
    EXPECT_EQ(canvas.state().liveRect, std::nullopt);
}

TEST_F(CanvasTextTest, GivesTheFieldWhiteTextWithoutAWindow)
{
    canvas.setDelegate(nullptr);
    canvas.showTextField({10, 20});
    EXPECT_EQ(view.shownFields.at(0).textColor, Color::white(1));
    view.typed = "a";
    canvas.commitTextIfNeeded();
    EXPECT_EQ(only(), textAt({10, 20}, "a", Color::white(1)));
}

TEST_F(CanvasTextTest, MakesAnItemOfTheTypedTextAtTheClickWithoutASize)
{
    type({200, 150}, "hello");
    canvas.textFieldCommitted();
    EXPECT_THAT(window.added, ElementsAre(textAt({200, 150}, "hello")));
    EXPECT_EQ(only().rect.size, Size{});
    EXPECT_FALSE(canvas.hasActiveTextField());
}

TEST_F(CanvasTextTest, RemovesTheFieldAndTakesTheKeyboardBackBeforeItAddsTheItem)
{
    type({200, 150}, "hello");
    view.journal.clear();
    canvas.commitTextIfNeeded();
    EXPECT_THAT(view.journal, ElementsAre("field removed", "canvas focused", "redraw"));
}

TEST_F(CanvasTextTest, KeepsTheColourThatTheFieldHad)
{
    window.color = systemRed;
    type({200, 150}, "hello");
    window.color = systemBlue;
    canvas.commitTextIfNeeded();
    EXPECT_EQ(only().color, systemRed);
}

TEST_F(CanvasTextTest, TrimsSpacesAndTabsButNoLineBreaks)
{
    const std::vector<std::pair<std::string, std::string>> rows{
        {" a ", "a"},       {"\t a b \t", "a b"}, {"a", "a"},
        {"\na\n", "\na\n"}, {" \n ", "\n"},       {"  \xC3\xA9 ", "\xC3\xA9"},
    };
    for (const auto& [typed, kept] : rows) {
        window.added.clear();
        canvas.setAnnotations({});
        type({200, 150}, typed);
        canvas.commitTextIfNeeded();
        ASSERT_EQ(window.added.size(), 1u) << typed;
        EXPECT_EQ(window.added[0].text, kept);
    }
}

TEST_F(CanvasTextTest, DropsABlankTextSilently)
{
    for (const char* blank : {"", " ", "   ", "\t", " \t "}) {
        type({200, 150}, blank);
        canvas.commitTextIfNeeded();
        EXPECT_FALSE(canvas.hasActiveTextField());
    }
    EXPECT_THAT(canvas.annotations(), IsEmpty());
    EXPECT_THAT(window.added, IsEmpty());
}

TEST_F(CanvasTextTest, CommitsAnOpenFieldAtTheSecondClickAndOpensNoOther)
{
    type({200, 150}, "hello");
    canvas.mouseDown({300, 250});
    canvas.mouseUp({300, 250});
    EXPECT_THAT(window.added, ElementsAre(textAt({200, 150}, "hello")));
    EXPECT_FALSE(canvas.hasActiveTextField());
    EXPECT_EQ(view.shownFields.size(), 1u);
}

// Bug: the field stayed open without the keyboard, and Delete removed the item that was clicked.
TEST_F(CanvasTextTest, CommitsAnOpenFieldAtAClickOnAnItemOrAHandle)
{
    const auto item = highlightAt({{300, 250}, {100, 80}});
    for (const Point place : {Point{350, 300}, Point{300, 250}}) {
        window.added.clear();
        canvas.setAnnotations({item});
        type({100, 150}, "hello");
        canvas.mouseDown(place);
        EXPECT_THAT(window.added, ElementsAre(textAt({100, 150}, "hello")));
        EXPECT_FALSE(canvas.hasActiveTextField());
        EXPECT_EQ(canvas.state().isActive(0), true);
        canvas.mouseUp(place);
    }
}

TEST_F(CanvasTextTest, CommitsAnOpenFieldBeforeAShapeIsDrawn)
{
    type({100, 150}, "hello");
    window.tool = AnnotationTool::highlight;
    drag({300, 250}, {400, 330});
    EXPECT_THAT(
        window.added,
        ElementsAre(textAt({100, 150}, "hello"), highlightAt({{300, 250}, {100, 80}})));
}

TEST_F(CanvasTextTest, KeepsTheFieldInsideOfTheCanvasAndTheTextAtTheClick)
{
    struct Row {
        Point click, fieldOrigin;
    };
    for (const Row& row : {
             Row{{400, 200}, {296, 190}},
             Row{{200, 4}, {200, 0}},
             Row{{200, 395}, {200, 372}},
             Row{{490, 2}, {296, 0}},
         }) {
        canvas.setAnnotations({});
        type(row.click, "a");
        EXPECT_EQ(view.shownFields.back().frame, (Rect{row.fieldOrigin, {200, 24}}));
        canvas.commitTextIfNeeded();
        EXPECT_EQ(only().rect.origin, row.click);
    }
    canvas.setSize({120, 100});
    type({90, 50}, "");
    EXPECT_EQ(view.shownFields.back().frame, (Rect{{0, 40}, {200, 24}}));
}

// How bright a colour is, from 0 to 1, when it lies over a grey
double luminance(Color color, double below)
{
    const auto part = [&](double value) {
        const double mixed = value * color.alpha + below * (1 - color.alpha);
        return mixed <= 0.03928 ? mixed / 12.92 : std::pow((mixed + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(color.red) + 0.7152 * part(color.green) + 0.0722 * part(color.blue);
}

TEST_F(CanvasTextTest, ShowsAPlaceholderThatIsReadableInEveryColourOverEveryPicture)
{
    for (const Color& color : swatchColorValues) {
        window.color = color;
        type({200, 150}, "");
        canvas.commitTextIfNeeded();
        const TextFieldLook& look = view.shownFields.back();
        for (const double picture : {0.0, 0.5, 1.0}) {
            const double ground = picture * (1 - look.background.alpha);
            const double dark = luminance(look.background, picture);
            EXPECT_GT((luminance(look.placeholderColor, ground) + 0.05) / (dark + 0.05), 4.5);
        }
    }
}

TEST_F(CanvasTextTest, MovesAnItemInsteadOfOpeningAFieldOnIt)
{
    canvas.setAnnotations({textAt({200, 150}, "hello")});
    canvas.mouseDown({210, 160});
    EXPECT_THAT(view.shownFields, IsEmpty());
    EXPECT_EQ(canvas.state().movingIndex, 0u);
}

TEST_F(CanvasTextTest, CommitsNothingWithoutAField)
{
    canvas.commitTextIfNeeded();
    EXPECT_THAT(view.journal, IsEmpty());
}

TEST_F(CanvasTextTest, OnlyRedrawsWhenATextClickIsDragged)
{
    type({200, 150}, "");
    view.journal.clear();
    canvas.mouseDragged({250, 180});
    canvas.mouseUp({250, 180});
    EXPECT_THAT(view.journal, IsEmpty()) << "there is no drag";
    EXPECT_THAT(window.added, IsEmpty());
}

} // namespace
} // namespace tallowbay
