#include "views/ui/HoverButton.h"

#include "support/OffscreenProgram.h"

#include <gtest/gtest.h>

#include <QEnterEvent>
#include <QPainter>

namespace tallowbay::views {
namespace {

// All of its content is one red square in the middle.
class SquareButton final : public HoverButton {
public:
    explicit SquareButton(QWidget* parent)
        : HoverButton(QStringLiteral("Square"), {0, 0.5}, parent)
    {
        setGeometry(10, 10, 20, 20);
    }
    using HoverButton::setLitFromAbove;

protected:
    void paintContent(QPainter& painter) override { painter.fillRect(5, 5, 10, 10, Qt::red); }
};

class HoverButtonTest : public testing::Test {
protected:
    HoverButtonTest()
    {
        window.resize(60, 60);
        window.setPalette(Qt::black);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(program.runUntil([this] { return window.isActiveWindow(); }));
    }

    void enter()
    {
        QEnterEvent event({1, 1}, {11, 11}, {11, 11});
        QCoreApplication::sendEvent(&button, &event);
    }
    void leave()
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&button, &event);
    }
    int ground() { return qRed(window.grab().toImage().pixel(12, 12)); }
    QColor content() { return window.grab().toImage().pixelColor(20, 20); }

    test::OffscreenProgram program;
    QWidget window;
    QWidget other;
    SquareButton button{&window};
};

TEST_F(HoverButtonTest, IsLitUnderTheMouse)
{
    EXPECT_EQ(ground(), 0);
    enter();
    EXPECT_NEAR(ground(), 128, 2);
    leave();
    EXPECT_EQ(ground(), 0);
}

TEST_F(HoverButtonTest, TheLightTakesThePlaceOfTheBackground)
{
    button.setBackground(QColor(255, 255, 255, 200));
    enter();
    EXPECT_NEAR(ground(), 128, 2);
    leave();
    EXPECT_NEAR(ground(), 200, 2);
}

TEST_F(HoverButtonTest, TheLightLiesBehindTheSymbol)
{
    enter();
    EXPECT_EQ(content(), QColor(Qt::red));
}

TEST_F(HoverButtonTest, TheLightLiesOverWhatHidesTheGround)
{
    button.setLitFromAbove();
    enter();
    EXPECT_NEAR(content().green(), 128, 2);
}

TEST_F(HoverButtonTest, GoesDarkWhenItsWindowLosesTheKeyboard)
{
    enter();
    other.show();
    other.activateWindow();
    ASSERT_TRUE(program.runUntil([this] { return !window.isActiveWindow(); }));
    EXPECT_EQ(ground(), 0);
    EXPECT_FALSE(button.isActiveWindow());
    enter();
    EXPECT_EQ(ground(), 0) << "and stays so";
}

} // namespace
} // namespace tallowbay::views
