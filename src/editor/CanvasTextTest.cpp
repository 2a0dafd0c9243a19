#include "editor/CanvasFixture.h"

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
    const TextFieldLook expected{
        {{200, 140}, {200, 24}},
        {16, FontWeight::semibold},
        systemRed,
        {0, 0, 0, 0.6},
        "Type here..."};
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
