#include "support/EditorViewFixture.h"
#include "ui/TallowLoaderPanel.h"
#include "views/ui/LoaderView.h"

#include <QCloseEvent>
#include <QScreen>
#include <QTemporaryDir>
#include <QWindow>

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
    QRgb ground() { return view().grab().toImage().pixel(2, 2); }
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

TEST_F(EditorWindowViewTest, HasAGroundWhenComposingEndsUnderIt)
{
    windowSystem.composes = true;
    take("A");
    open();
    const auto groundAlpha = [this] { return qAlpha(view().grab().toImage().pixel(2, 2)); };
    EXPECT_LT(groundAlpha(), 100) << "the desktop shines through";
    windowSystem.composes = false;
    EXPECT_TRUE(runUntil([&] { return groundAlpha() == 255; }));
    EXPECT_EQ(qAlpha(view().grab().toImage().pixel(view().rect().center())), 255);
    windowSystem.composes = true;
    EXPECT_TRUE(runUntil([&] { return groundAlpha() < 100; }));
}

TEST_F(EditorWindowViewTest, ShowsTheDesktopAsTheDisplayServerSeesIt)
{
    const QSize screen = QGuiApplication::primaryScreen()->size();
    Bitmap green({screen.width(), screen.height()});
    for (int y = 0; y < screen.height(); ++y)
        std::fill_n(green.row(y), screen.width(), 0xff00ff00);
    windowSystem.desktop = green;
    open();
    EXPECT_TRUE(runUntil([this] { return ground() == qRgb(0, 204, 0); })) << "dimmed";
}

// It used to come back before the desktop as it had been.
TEST_F(EditorWindowViewTest, ForgetsTheDesktopWhenItIsMinimized)
{
    QWidget desktop(nullptr, Qt::FramelessWindowHint);
    desktop.setGeometry(QGuiApplication::primaryScreen()->geometry());
    desktop.setStyleSheet(QStringLiteral("background: white"));
    desktop.show();
    ASSERT_TRUE(runUntil([&] { return desktop.windowHandle()->isExposed(); }));
    take("A");
    open();
    EXPECT_TRUE(runUntil([this] { return ground() == qRgb(204, 204, 204); }));
    view().setWindowState(Qt::WindowMinimized);
    EXPECT_FALSE(window->visible());
    desktop.close();
    view().setWindowState(Qt::WindowFullScreen); // as window managers do
    EXPECT_TRUE(window->visible());
    EXPECT_TRUE(runUntil([this] { return ground() == qRgb(24, 26, 30); })) << "it is unknown";
}

// A screen of pixels as they are, and beside it one of half the size in the same points.
class EditorScaleTest : public test::EditorViewTest {
protected:
    EditorScaleTest()
        : EditorViewTest("offscreen:configfile=" + configuration())
    {
    }

    // The pixels that the window's glass blurs.
    int blurredWidth()
    {
        int right = 0;
        for (const PixelRect& part : windowSystem.blurred[view().winId()])
            right = std::max(right, part.x + part.width);
        return right;
    }

private:
    static QByteArray configuration()
    {
        static QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("screens.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(R"({"screens": [
            {"name": "coarse", "x": 0, "y": 0, "width": 1000, "height": 700, "dpr": 1},
            {"name": "fine", "x": 1000, "y": 0, "width": 2000, "height": 1400, "dpr": 2}]})");
        return file.fileName().toLocal8Bit();
    }
};

TEST_F(EditorScaleTest, FollowsAnotherScaleWithoutAnotherSize)
{
    windowSystem.composes = windowSystem.blurs = true;
    take("A");
    open();
    const QSize size = view().size();
    const int before = blurredWidth();
    view().windowHandle()->setScreen(QGuiApplication::screens().back());
    settle();
    ASSERT_EQ(view().devicePixelRatioF(), 2);
    ASSERT_EQ(view().size(), size);
    EXPECT_NEAR(blurredWidth(), 2 * before, 2);
}

// Its icon used to be drawn in the pixels of the screen that it was made on.
TEST_F(EditorScaleTest, TheLoaderIsAsSharpOnAScreenOfAnotherScale)
{
    const TallowLoaderPanel logic(desktop.screens, views);
    QScreen* const fine = QGuiApplication::screens().back();
    const auto seenThere = [&](bool paintedBefore) {
        LoaderWidget loader(logic, windowSystem);
        if (paintedBefore)
            loader.grab();
        loader.setScreen(fine);
        EXPECT_EQ(loader.devicePixelRatioF(), 2);
        return loader.grab().toImage();
    };
    EXPECT_EQ(seenThere(true), seenThere(false));
}

} // namespace
} // namespace tallowbay::views
