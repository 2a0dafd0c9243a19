#include "views/headless/HeadlessViews.h"

#include "base/Lifetime.h"

namespace tallowbay::headless {

namespace {

class RecordedWindow final : public WindowPort {
public:
    RecordedWindow(std::shared_ptr<WindowRecord> record, Dispatch& dispatch)
        : record(std::move(record))
        , dispatch(dispatch)
    {
    }
    ~RecordedWindow() override
    {
        record->alive = false;
        record->onScreen = false;
    }

    void orderFront() override
    {
        record->onScreen = true;
        record->journal.push_back("front");
    }
    void setAlpha(double alpha) override
    {
        ++changes;
        record->alpha = alpha;
        record->journal.push_back("alpha " + std::to_string(static_cast<int>(alpha)));
    }
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override
    {
        record->journal.push_back(
            "animate to " + std::to_string(static_cast<int>(to)) + " in "
            + std::to_string(duration.count()) + " ms");
        const auto complete = [this, to, completion = std::move(completion), change = ++changes] {
            if (change == changes)
                record->alpha = to;
            if (completion)
                completion();
        };
        dispatch.mainAfter(duration, lifetime.guard(complete));
    }
    void close() override
    {
        record->onScreen = false;
        record->journal.push_back("close");
    }

private:
    std::shared_ptr<WindowRecord> record;
    Dispatch& dispatch;
    int changes = 0; // the number of the last one who was asked to set the alpha
    Lifetime lifetime;
};

class RecordedOnboarding final : public OnboardingPort {
public:
    explicit RecordedOnboarding(std::shared_ptr<OnboardingRecord> record)
        : record(std::move(record))
    {
    }
    ~RecordedOnboarding() override
    {
        record->logic = nullptr;
        record->alive = false;
        record->onScreen = false;
    }

    void makeKeyAndOrderFront() override
    {
        record->onScreen = true;
        record->journal.push_back("key and front");
    }

private:
    std::shared_ptr<OnboardingRecord> record;
};

} // namespace

std::unique_ptr<OnboardingPort> HeadlessViews::makeOnboardingWindow(OnboardingWindow& logic)
{
    onboardingWindows.push_back(std::make_shared<OnboardingRecord>());
    onboardingWindows.back()->logic = &logic;
    return std::make_unique<RecordedOnboarding>(onboardingWindows.back());
}

std::unique_ptr<WindowPort> HeadlessViews::makeToast(const ToastContent& content)
{
    toasts.push_back(std::make_shared<ToastRecord>());
    toasts.back()->content = content;
    return std::make_unique<RecordedWindow>(toasts.back(), dispatch);
}

std::vector<std::string> HeadlessViews::messages() const
{
    std::vector<std::string> texts;
    for (const auto& toast : toasts)
        texts.push_back(toast->content.message);
    return texts;
}

} // namespace tallowbay::headless
