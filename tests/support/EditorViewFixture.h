#pragma once

#include "onboarding/OnboardingPort.h"
#include "platform/headless/HeadlessWindows.h"
#include "support/EditorFixture.h"
#include "support/OffscreenProgram.h"
#include "views/editor/AnnotationWindowView.h"
#include "views/editor/EditorAccessibility.h"

#include <QMouseEvent>

namespace tallowbay::test {

// The editor's window as Qt paints it, on a screen that nobody sees, with the logic and the desktop
// of EditorTest. The time of the logic is virtual, that of the animations is real.
class EditorViewTest : private OffscreenProgram, public EditorTest {
protected:
    explicit EditorViewTest(const QByteArray& platform = "offscreen")
        : OffscreenProgram(platform)
    {
        views::makeEditorAccessible();
        window = std::make_unique<AnnotationWindow>(desktop.platform(), qtViews, saver, toasts);
        window->onClipboardUpdate = [this](const Paths& urls) {
            clipboards.push_back(names(urls));
        };
        window->onConfirm = [this](const Paths& urls) { confirmed.push_back(names(urls)); };
    }

    // Fully faded in, with the keyboard.
    void open()
    {
        window->show();
        EXPECT_TRUE(runUntil([this] {
            settle();
            return view().isActiveWindow();
        }));
        settle();
    }

    using OffscreenProgram::runUntil;
    void settle()
    {
        EditorTest::settle();
        OffscreenProgram::settle();
        EditorTest::settle();
    }

    views::AnnotationWindowView& view() { return *qtViews.view; }
    template <typename Part> Part& part() { return *view().template findChild<Part*>(); }
    template <typename Part> Part& part(const char* name)
    {
        return *view().template findChild<Part*>(QString::fromLatin1(name));
    }
    views::StripView& stripView()
    {
        return *dynamic_cast<views::StripView*>(&part<QWidget>("strip"));
    }

    // Of the mouse, at a place in the widget, with what buttons are down then.
    static void mouse(
        QWidget& widget, QEvent::Type type, const QPoint& place,
        Qt::MouseButtons buttons = Qt::NoButton, Qt::MouseButton button = Qt::NoButton)
    {
        QMouseEvent event(type, place, widget.mapToGlobal(place), button, buttons, Qt::NoModifier);
        QCoreApplication::sendEvent(&widget, &event);
    }
    static void press(QWidget& widget, const QPoint& place)
    {
        mouse(widget, QEvent::MouseButtonPress, place, Qt::LeftButton, Qt::LeftButton);
    }
    static void drag(QWidget& widget, const QPoint& place)
    {
        mouse(widget, QEvent::MouseMove, place, Qt::LeftButton);
    }
    static void release(QWidget& widget, const QPoint& place)
    {
        mouse(widget, QEvent::MouseButtonRelease, place, Qt::NoButton, Qt::LeftButton);
    }

    // Of the screenshot, in the strip.
    QPoint middleOf(char name)
    {
        for (views::CellView* cell : stripView().cellsInOrder())
            if (cell->index() == indexOf(name))
                return cell->mapTo(&stripView(), cell->rect().center());
        return {};
    }
    QPoint checkboxOf(char name)
    {
        for (views::CellView* cell : stripView().cellsInOrder())
            if (cell->index() == indexOf(name))
                return cell->mapTo(&stripView(), views::CellView::checkboxRect().center());
        return {};
    }

    headless::HeadlessWindowSystem windowSystem;
    views::Backdrop backdrop{windowSystem};

private:
    class QtViewsOfEditor final : public Views {
    public:
        QtViewsOfEditor(WindowSystem& windows, views::Backdrop& backdrop)
            : windows(windows)
            , backdrop(backdrop)
        {
        }
        std::unique_ptr<AnnotationWindowPort> makeAnnotationWindow(AnnotationWindow& logic) override
        {
            auto made = std::make_unique<views::AnnotationWindowView>(logic, windows, backdrop);
            view = made.get();
            return made;
        }
        std::unique_ptr<OnboardingPort> makeOnboardingWindow(OnboardingWindow&) override
        {
            return nullptr;
        }
        std::unique_ptr<WindowPort> makeToast(const ToastContent&) override { return nullptr; }
        std::unique_ptr<LoaderPort> makeLoader(const TallowLoaderPanel&) override
        {
            return nullptr;
        }

        views::AnnotationWindowView* view = nullptr;

    private:
        WindowSystem& windows;
        views::Backdrop& backdrop;
    };

    QtViewsOfEditor qtViews{windowSystem, backdrop};
};

} // namespace tallowbay::test
