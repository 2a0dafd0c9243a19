#include "desktop/qt/QtDesktop.h"
#include "platform/qt/X11Connection.h"
#include "platform/x11/windows/X11WindowSystem.h"
#include "support/WindowPortContract.h"
#include "ui/ToastContent.h"
#include "views/QtViews.h"
#include "views/ui/ToastWidget.h"

namespace tallowbay::test {

namespace {

class QtToastBackend {
public:
    std::unique_ptr<WindowPort> makeWindow()
    {
        return views.makeToast(
            {"3 Screenshot(s) Ready", {15, FontWeight::semibold}, {{500, 376}, {280, 48}}, 12});
    }
    std::optional<double> shownAlpha()
    {
        for (const QWidget* widget : QApplication::topLevelWidgets())
            if (const auto* toast = dynamic_cast<const views::ToastWidget*>(widget))
                if (toast->isVisible())
                    return toast->currentAlpha();
        return std::nullopt;
    }

    std::string keyboardOwner() { return desktop.keyboardOwner(); }
    MonotonicTime now() { return std::chrono::steady_clock::now(); }
    void pass(std::chrono::milliseconds time) { desktop.runFor(time); }
    bool runUntil(const std::function<bool()>& condition) { return desktop.runUntil(condition); }

private:
    QtDesktop desktop;
    x11::X11WindowSystem windows{*qt::x11Connection()};
    views::QtViews views{windows};
};

} // namespace

} // namespace tallowbay::test

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(QtToast, WindowPortContract, test::QtToastBackend);
} // namespace tallowbay::contract
