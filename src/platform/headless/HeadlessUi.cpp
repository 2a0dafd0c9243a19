#include "platform/headless/HeadlessUi.h"

#include "base/Lifetime.h"

namespace tallowbay::headless {

namespace {

class RecordedToast final : public WindowPort {
public:
    RecordedToast(std::shared_ptr<ToastRecord> record, Dispatch& dispatch)
        : record(std::move(record))
        , dispatch(dispatch)
    {
    }
    ~RecordedToast() override
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
        record->alpha = alpha;
        record->journal.push_back("alpha " + std::to_string(static_cast<int>(alpha)));
    }
    void animateAlpha(
        double to, std::chrono::milliseconds duration, std::function<void()> completion) override
    {
        record->journal.push_back(
            "animate to " + std::to_string(static_cast<int>(to)) + " in "
            + std::to_string(duration.count()) + " ms");
        dispatch.mainAfter(duration, lifetime.guard([this, to, completion = std::move(completion)] {
            record->alpha = to;
            completion();
        }));
    }
    void close() override
    {
        record->onScreen = false;
        record->journal.push_back("close");
    }

private:
    std::shared_ptr<ToastRecord> record;
    Dispatch& dispatch;
    Lifetime lifetime;
};

} // namespace

std::unique_ptr<WindowPort> HeadlessToasts::make(const ToastContent& content)
{
    made.push_back(std::make_shared<ToastRecord>());
    made.back()->content = content;
    return std::make_unique<RecordedToast>(made.back(), dispatch);
}

std::vector<std::string> HeadlessToasts::messages() const
{
    std::vector<std::string> texts;
    for (const auto& record : made)
        texts.push_back(record->content.message);
    return texts;
}

} // namespace tallowbay::headless
