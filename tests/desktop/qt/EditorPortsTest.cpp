#include "desktop/qt/QtDesktop.h"
#include "desktop/support/Wait.h"
#include "editor/saving/AnnotationSaver.h"
#include "editor/window/AnnotationWindow.h"
#include "editor/window/AnnotationWindowPort.h"
#include "platform/headless/Desktop.h"
#include "platform/qt/X11Connection.h"
#include "platform/x11/windows/X11WindowSystem.h"
#include "support/WindowPortContract.h"
#include "ui/LoaderPort.h"
#include "ui/TallowLoaderPanel.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/QtViews.h"
#include "views/editor/AnnotationWindowView.h"
#include "views/headless/HeadlessViews.h"
#include "views/ui/LoaderView.h"

#include <QWindow>

#include <xcb/shape.h>

namespace tallowbay::test {

namespace {

// Windows on a real X server, each of a logic on a desktop in memory, which has a view of its own
// there.
class QtEditorDesktop {
public:
    std::string keyboardOwner() { return desktop.keyboardOwner(); }
    MonotonicTime now() { return std::chrono::steady_clock::now(); }
    void pass(std::chrono::milliseconds time) { desktop.runFor(time); }
    bool runUntil(const std::function<bool()>& condition) { return desktop.runUntil(condition); }
    bool composes() const { return windows.composesWindows(); }

protected:
    template <typename Widget> std::optional<double> alphaOf()
    {
        for (const QWidget* widget : QApplication::topLevelWidgets())
            if (const auto* found = dynamic_cast<const Widget*>(widget))
                if (found->isVisible())
                    return found->currentAlpha();
        return std::nullopt;
    }

    QtDesktop desktop;
    headless::Desktop memory;
    headless::HeadlessViews headlessViews{memory.dispatch};
    x11::X11WindowSystem windows{*qt::x11Connection()};
    views::QtViews views{windows};
};

class QtLoaderBackend : public QtEditorDesktop {
public:
    std::unique_ptr<LoaderPort> makeLoader() { return views.makeLoader(logic); }
    std::unique_ptr<WindowPort> makeWindow() { return makeLoader(); }
    QtDesktop& screen() { return desktop; }
    std::optional<double> shownAlpha() { return alphaOf<views::LoaderWidget>(); }

private:
    TallowLoaderPanel logic{memory.screens, headlessViews};
};

class QtEditorBackend : public QtEditorDesktop {
public:
    std::unique_ptr<AnnotationWindowPort> makeEditor() { return views.makeAnnotationWindow(logic); }
    std::unique_ptr<WindowPort> makeWindow() { return makeEditor(); }
    std::optional<double> shownAlpha() { return alphaOf<views::AnnotationWindowView>(); }
    QtDesktop& screen() { return desktop; }

    // The rectangles of the window that take clicks.
    int clickedParts()
    {
        xcb_connection_t* const server = qt::x11Connection();
        for (const QWindow* window : QGuiApplication::topLevelWindows())
            if (window->isVisible()) {
                const auto cookie = xcb_shape_get_rectangles(
                    server, xcb_window_t(window->winId()), XCB_SHAPE_SK_INPUT);
                const std::unique_ptr<xcb_shape_get_rectangles_reply_t, decltype(&std::free)> reply(
                    xcb_shape_get_rectangles_reply(server, cookie, nullptr), &std::free);
                return xcb_shape_get_rectangles_rectangles_length(reply.get());
            }
        return -1;
    }

private:
    ToastPresenter presenter{memory.dispatch, memory.screens, memory.textMeasurer, headlessViews};
    ToastGate toasts{memory.defaults.standard(), presenter};
    AnnotationSaver saver{
        memory.dispatch,
        AnnotationExporter(
            memory.files, memory.imageCodec, memory.offscreenGraphics,
            ImageCompressor(memory.files, memory.processes, memory.resources, memory.tools))};
    AnnotationWindow logic{memory.platform(), headlessViews, saver, toasts};
};

class EditorPortTest : public testing::Test {
protected:
    void show(double alpha)
    {
        editor->setAlpha(alpha);
        editor->makeKeyAndOrderFront();
        ASSERT_TRUE(backend.runUntil([&] { return backend.shownAlpha() == alpha; }));
    }
    bool becomes(const QPoint& place, const QColor& color)
    {
        return backend.runUntil([&] {
            const QColor seen = backend.screen().pixel(place.x(), place.y());
            return std::abs(seen.red() - color.red()) < 3
                && std::abs(seen.green() - color.green()) < 3
                && std::abs(seen.blue() - color.blue()) < 3;
        });
    }

    QtEditorBackend backend;
    std::unique_ptr<AnnotationWindowPort> editor = backend.makeEditor();
    const QPoint besideCards{40, 700};
};

TEST_F(EditorPortTest, LetsClicksThroughWhileItIsAskedTo)
{
    show(1);
    EXPECT_EQ(backend.clickedParts(), 1);
    editor->setIgnoresMouseEvents(true);
    EXPECT_EQ(backend.clickedParts(), 0);
    editor->setIgnoresMouseEvents(false);
    EXPECT_EQ(backend.clickedParts(), 1);
}

// Nothing shines through this window: it is the desktop itself until it fades in.
TEST_F(EditorPortTest, DimsTheDesktopAsMuchAsItIsOpaque)
{
    const QColor desktop = backend.screen().background;
    const auto dimmed = [&](double part) {
        return QColor::fromRgbF(
            float(desktop.redF() * (1 - part)), float(desktop.greenF() * (1 - part)),
            float(desktop.blueF() * (1 - part)));
    };
    show(0);
    EXPECT_TRUE(becomes(besideCards, desktop));
    editor->setAlpha(0.5);
    EXPECT_TRUE(becomes(besideCards, dimmed(0.1)));
    editor->setAlpha(1);
    EXPECT_TRUE(becomes(besideCards, dimmed(0.2)));
}

class LoaderPortTest : public testing::TestWithParam<bool> {
protected:
    LoaderPortTest()
    {
        if (GetParam())
            compositor = backend.screen().server().start({"picom", "--backend", "xrender"});
        EXPECT_TRUE(backend.runUntil([this] { return backend.composes() == GetParam(); }));
    }

    QtLoaderBackend backend;
    std::unique_ptr<ChildProcess> compositor;
};

// The editor is built next, and nothing is painted while that holds up the main loop.
TEST_P(LoaderPortTest, IsSeenBeforeTheMainLoopGoesOn)
{
    const auto loader = backend.makeLoader();
    loader->setOrigin({600, 300});
    loader->setAlpha(1);
    loader->orderFront();
    loader->startPulse();
    const auto isWhite = [this] { return backend.screen().pixel(644, 800 - 378).red() > 200; };
    EXPECT_TRUE(waitUntil(isWhite));
}

INSTANTIATE_TEST_SUITE_P(Composed, LoaderPortTest, testing::Bool());

} // namespace

} // namespace tallowbay::test

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(QtEditor, WindowPortContract, test::QtEditorBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(QtLoader, WindowPortContract, test::QtLoaderBackend);
} // namespace tallowbay::contract
