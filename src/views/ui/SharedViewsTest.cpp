#include "support/OffscreenProgram.h"
#include "views/ui/HoverView.h"
#include "views/ui/OnboardingButtonView.h"
#include "views/ui/TallowLogoView.h"
#include "views/ui/ToggleSwitch.h"

#include <gtest/gtest.h>

#include <QEnterEvent>

namespace tallowbay::views {
namespace {

class SharedViewsTest : public testing::Test {
protected:
    SharedViewsTest()
    {
        window.resize(200, 200);
        window.setPalette(Qt::black);
    }
    void open()
    {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(program.runUntil([this] { return window.isActiveWindow(); }));
    }

    test::OffscreenProgram program;
    QWidget window;
};

TEST_F(SharedViewsTest, TheLogoMovesExactlyWhileItIsShown)
{
    TallowLogoView logo(nullptr, &window);
    logo.resize(200, 200);
    EXPECT_FALSE(logo.isAnimated());
    open();
    EXPECT_TRUE(logo.isAnimated());
    window.hide();
    EXPECT_FALSE(logo.isAnimated());
    window.show();
    EXPECT_TRUE(logo.isAnimated());
    logo.setParent(nullptr);
    EXPECT_FALSE(logo.isAnimated());
    logo.setParent(&window);
    logo.show();
    EXPECT_TRUE(logo.isAnimated());
}

TEST_F(SharedViewsTest, TheLogoLooksAtTheMouse)
{
    TallowLogoView logo(nullptr, &window);
    logo.resize(512, 512);
    window.resize(512, 512);
    open();
    // The middle of a pupil that looks there, wherever it was before.
    const auto darkAt = [&](int x, int y) {
        return logo.grab().toImage().pixelColor(x, y).red() < 60;
    };
    const QPoint gaze = logo.mapToGlobal(QPoint(245, 220));
    QCursor::setPos(gaze - QPoint(0, 600)); // upwards
    EXPECT_TRUE(program.runUntil([&] { return darkAt(215, 220 - 12) && !darkAt(215, 220 + 8); }));
    QCursor::setPos(gaze + QPoint(0, 600));
    EXPECT_TRUE(program.runUntil([&] { return darkAt(215, 220 + 12) && !darkAt(215, 220 - 8); }));
}

TEST_F(SharedViewsTest, AHoverViewIsLitUnderTheMouse)
{
    HoverView view(&window, {0, 0.5});
    view.setGeometry(10, 10, 50, 50);
    open();
    const auto ground = [this] { return qRed(window.grab().toImage().pixel(30, 30)); };
    EXPECT_EQ(ground(), 0);
    QEnterEvent enter({1, 1}, {11, 11}, {11, 11});
    QCoreApplication::sendEvent(&view, &enter);
    EXPECT_NEAR(ground(), 128, 2);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&view, &leave);
    EXPECT_EQ(ground(), 0);
    EXPECT_EQ(view.cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(SharedViewsTest, AnOnboardingButtonIsLitOnlyWhileItIsEnabled)
{
    OnboardingButtonView button({}, OnboardingHoverButton::Style::bordered, &window);
    button.setGeometry(10, 10, 80, 40);
    const auto ground = [this] { return qRed(window.grab().toImage().pixel(50, 30)); };
    const auto enter = [&] {
        QEnterEvent event({1, 1}, {11, 11}, {11, 11});
        QCoreApplication::sendEvent(&button, &event);
    };
    EXPECT_EQ(ground(), 0);
    enter();
    EXPECT_NEAR(ground(), 20, 2);
    button.setEnabled(false);
    EXPECT_EQ(ground(), 0);
    enter();
    EXPECT_EQ(ground(), 0);
    EXPECT_EQ(button.cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(SharedViewsTest, ASwitchShowsWhatItIs)
{
    ToggleSwitch shown(QStringLiteral("Sound"), &window);
    const auto leftEnd = [&] { return shown.grab().toImage().pixelColor(8, 11); };
    EXPECT_EQ(leftEnd(), QColor(Qt::white)) << "its knob";
    shown.click();
    EXPECT_TRUE(shown.isChecked());
    EXPECT_LT(leftEnd().red(), 100);
    EXPECT_EQ(shown.cursor().shape(), Qt::PointingHandCursor);
}

} // namespace
} // namespace tallowbay::views
