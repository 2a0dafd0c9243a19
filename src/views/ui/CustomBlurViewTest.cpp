#include "views/ui/CustomBlurView.h"

#include "platform/headless/HeadlessWindows.h"
#include "support/OffscreenProgram.h"
#include "views/ui/GlassCard.h"

#include <gtest/gtest.h>

#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace tallowbay::views {
namespace {

// A desktop that is black to the left and white to the right.
class Desktop final : public QWidget {
public:
    Desktop()
        : QWidget(nullptr, Qt::FramelessWindowHint)
    {
        setGeometry(QGuiApplication::primaryScreen()->geometry());
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::black);
        painter.fillRect(rect().adjusted(width() / 2, 0, 0, 0), Qt::white);
    }
};

class CustomBlurViewTest : public testing::Test {
protected:
    CustomBlurViewTest()
    {
        desktop.show();
        EXPECT_TRUE(program.runUntil([this] { return desktop.windowHandle()->isExposed(); }));
        backdrop.look();
        backdrop.setSize(desktop.size());
        window.setGeometry(desktop.geometry());
    }

    // The points over which black becomes white.
    int softness(QWidget& view)
    {
        const QImage seen = view.grab().toImage();
        const int middle = seen.height() / 2;
        const int darkest = qRed(seen.pixel(0, middle));
        const int lightest = qRed(seen.pixel(seen.width() - 1, middle));
        EXPECT_GT(lightest, darkest + 30);
        int between = 0;
        for (int x = 0; x < seen.width(); ++x) {
            const int red = qRed(seen.pixel(x, middle));
            between += red > darkest + 2 && red < lightest - 2;
        }
        return between;
    }

    test::OffscreenProgram program;
    headless::HeadlessWindowSystem windowSystem;
    Backdrop backdrop{windowSystem};
    Desktop desktop;
    QWidget window;
};

TEST_F(CustomBlurViewTest, BlursWhatIsBehindTheWindowAsMuchAsItIsToldTo)
{
    CustomBlurView view(backdrop, &window);
    view.resize(window.size());
    EXPECT_EQ(view.blurRadius(), 20);
    const int usual = softness(view);
    view.setBlurRadius(40);
    EXPECT_NEAR(softness(view), 2 * usual, usual / 4);
    view.setBlurRadius(0);
    EXPECT_LT(softness(view), usual / 4);
}

TEST_F(CustomBlurViewTest, BlursAsMuchAsItIsToldToAlsoOverAnotherDesktop)
{
    CustomBlurView view(backdrop, &window);
    view.resize(window.size());
    view.setBlurRadius(0);
    const int sharp = softness(view);
    backdrop.look();
    view.setBlurRadius(40);
    EXPECT_GT(softness(view), 4 * sharp);
    view.setBlurRadius(0);
    EXPECT_EQ(softness(view), sharp);
}

TEST_F(CustomBlurViewTest, AllWithinItBlurAlike)
{
    CustomBlurView view(backdrop, &window);
    QWidget within(&view);
    GlassCard card(backdrop, 16, &within);
    CustomBlurView inCard(backdrop, &card);
    view.setBlurRadius(7);
    EXPECT_EQ(card.blurRadius(), 7);
    EXPECT_EQ(inCard.blurRadius(), 7);
}

TEST_F(CustomBlurViewTest, WhatCameIntoItBlursAlikeWhenItIsLaidOutOrShown)
{
    CustomBlurView view(backdrop, nullptr);
    view.setBlurRadius(7);
    CustomBlurView first(backdrop, &view);
    EXPECT_EQ(first.blurRadius(), 20);
    view.resize(300, 200);
    view.grab(); // which lays it out
    EXPECT_EQ(first.blurRadius(), 7);
    CustomBlurView second(backdrop, &view);
    view.setParent(&window);
    EXPECT_EQ(second.blurRadius(), 7);
    CustomBlurView third(backdrop, &view);
    window.show();
    view.show();
    EXPECT_EQ(third.blurRadius(), 7);
}

TEST_F(CustomBlurViewTest, AGlassCardIsCutAtItsFourCornersAndNowhereElse)
{
    GlassCard card(backdrop, 16, &window);
    card.resize(90, 60);
    QImage seen(card.size(), QImage::Format_ARGB32_Premultiplied);
    seen.fill(Qt::transparent);
    card.render(&seen, QPoint(), QRegion(), QWidget::DrawChildren);
    const auto alphaFrom = [&](int x, int y) { // at the upper left corner, and at its mirrors
        const int right = seen.width() - 1 - x;
        const int below = seen.height() - 1 - y;
        const int alpha = qAlpha(seen.pixel(x, y));
        EXPECT_EQ(qAlpha(seen.pixel(right, y)), alpha);
        EXPECT_EQ(qAlpha(seen.pixel(x, below)), alpha);
        EXPECT_EQ(qAlpha(seen.pixel(right, below)), alpha);
        return alpha;
    };
    EXPECT_EQ(alphaFrom(1, 1), 0);
    EXPECT_EQ(alphaFrom(3, 3), 0);
    EXPECT_EQ(alphaFrom(6, 6), 255);
    EXPECT_EQ(alphaFrom(1, 20), 255);
    EXPECT_EQ(alphaFrom(30, 1), 255);
    EXPECT_EQ(alphaFrom(40, 25), 255);
}

TEST_F(CustomBlurViewTest, IsDenseWhereNothingIsKnownOfTheDesktop)
{
    backdrop.forget();
    CustomBlurView view(backdrop, &window);
    view.resize(window.size());
    const QImage seen = view.grab().toImage();
    EXPECT_EQ(seen.pixel(1, 1), seen.pixel(seen.width() - 2, 1));
    EXPECT_GT(qAlpha(seen.pixel(1, 1)), 200);
}

} // namespace
} // namespace tallowbay::views
