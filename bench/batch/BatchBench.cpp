// What one screenshot more costs the main queue in a batch that has many already. Everything that a
// desktop would do is done by doubles in memory, so that what is left is the program's own work.
//
//   batch_bench

#include "app/OutputFolderWatcher.h"
#include "app/ScreenshotBatch.h"
#include "editor/EditorSlot.h"
#include "platform/headless/Desktop.h"
#include "ui/ToastGate.h"
#include "ui/ToastWindow.h"
#include "views/headless/HeadlessViews.h"

#include <cstdio>

using namespace tallowbay;
using namespace std::chrono_literals;

namespace {

double microsecondsOf(int screenshots)
{
    headless::Desktop desktop;
    headless::HeadlessViews views{desktop.dispatch};
    EditorSlot slot;
    ToastPresenter presenter{desktop.dispatch, desktop.screens, desktop.textMeasurer, views};
    ToastGate toasts{desktop.defaults.standard(), presenter};
    ScreenshotBatch batch{desktop.platform(), toasts, slot, [] {}};
    OutputFolderWatcher watcher{desktop.platform(), batch, slot};
    desktop.defaults.standard().set("toastsDisabled", {true});
    watcher.startDirectoryWatcher();
    std::chrono::nanoseconds spent{0};
    for (int i = 0; i < screenshots; ++i) {
        const auto copy = headless::optimized / ("Screenshot " + std::to_string(i) + ".png");
        desktop.files.create(copy);
        const auto begin = std::chrono::steady_clock::now();
        batch.addToClipboard(copy);
        desktop.dispatch.advance(20ms); // as fast as two processors compress them
        spent += std::chrono::steady_clock::now() - begin;
    }
    return std::chrono::duration<double, std::micro>(spent).count() / screenshots;
}

} // namespace

int main()
{
    microsecondsOf(100); // warms up
    const double few = microsecondsOf(250);
    const double many = microsecondsOf(2000);
    std::printf(
        "per screenshot: %.1f us of 250, %.1f us of 2000, ratio %.1f\n", few, many, many / few);
    return 0;
}
