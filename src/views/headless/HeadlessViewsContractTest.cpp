#include "views/headless/HeadlessViews.h"

#include "platform/headless/VirtualTime.h"
#include "support/WindowPortContract.h"

namespace tallowbay::headless {

namespace {

using namespace std::chrono_literals;

class RecordedToastBackend {
public:
    std::unique_ptr<WindowPort> makeWindow() { return views.makeToast({}); }
    std::optional<double> shownAlpha()
    {
        const WindowRecord& record = *views.toasts.back();
        return record.onScreen ? std::optional(record.alpha) : std::nullopt;
    }
    std::string keyboardOwner() { return "another program"; } // as long as nobody can take it
    MonotonicTime now() { return clock.monotonicNow(); }
    void pass(std::chrono::milliseconds time) { dispatch.advance(time); }
    bool runUntil(const std::function<bool()>& condition)
    {
        for (int i = 0; i < 1000 && !condition(); ++i)
            dispatch.advance(1ms);
        return condition();
    }

private:
    VirtualClock clock;
    VirtualDispatch dispatch{clock};
    HeadlessViews views{dispatch};
};

} // namespace

} // namespace tallowbay::headless

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(HeadlessToast, WindowPortContract, headless::RecordedToastBackend);
} // namespace tallowbay::contract
