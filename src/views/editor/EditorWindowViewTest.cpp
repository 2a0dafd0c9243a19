#include "support/EditorViewFixture.h"

#include <QCloseEvent>

namespace tallowbay::views {
namespace {

class EditorWindowViewTest : public test::EditorViewTest {
protected:
    bool closes()
    {
        QCloseEvent close;
        QCoreApplication::sendEvent(&view(), &close);
        return close.isAccepted();
    }
};

TEST_F(EditorWindowViewTest, ClosingItConfirms)
{
    take("AB");
    open();
    EXPECT_FALSE(closes()) << "it fades out first";
    EXPECT_EQ(confirmed, std::vector<std::string>{"AB"});
}

TEST_F(EditorWindowViewTest, ClosingAHiddenOneDoesNothing)
{
    take("AB");
    open();
    window->confirmAndDismiss();
    ASSERT_TRUE(runUntil([this] {
        settle();
        return !view().isVisible();
    }));
    confirmed.clear();
    clipboards.clear();
    EXPECT_TRUE(closes());
    settle();
    EXPECT_TRUE(confirmed.empty());
    EXPECT_TRUE(clipboards.empty());
}

TEST_F(EditorWindowViewTest, NothingIsDrawnBeyondTheCardsRoundCorners)
{
    windowSystem.composes = true;
    take("A");
    open();
    const QRect card = part<QWidget>("canvasCard").geometry();
    const QPoint corner = card.bottomLeft() + QPoint(1, -1);
    const QPoint within = card.bottomLeft() + QPoint(12, -12);
    const auto seen = [this] { return view().grab().toImage(); };
    const QImage before = seen();
    AnnotationCanvas& canvas = window->canvas();
    const double height = part<QWidget>("canvas").height();
    canvas.mouseDown({100, height / 2});
    canvas.mouseDragged({0, 0});
    canvas.mouseUp({0, 0});
    settle();
    const QImage after = seen();
    EXPECT_EQ(after.pixel(corner), before.pixel(corner));
    EXPECT_NE(after.pixel(within), before.pixel(within));
}

} // namespace
} // namespace tallowbay::views
