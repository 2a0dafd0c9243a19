#pragma once

#include "platform/Dispatch.h"
#include "platform/TextMeasurer.h"
#include "platform/ToastViews.h"
#include "platform/WindowPort.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace tallowbay::headless {

// Every byte of a text is half as wide as the font is high.
class HeadlessTextMeasurer final : public TextMeasurer {
public:
    Size measure(const std::string& text, const Font& font) const override
    {
        std::size_t lines = 0;
        std::size_t longest = 0;
        for (std::size_t begin = 0; begin <= text.size(); ++lines) {
            const std::size_t end = std::min(text.find('\n', begin), text.size());
            longest = std::max(longest, end - begin);
            begin = end + 1;
        }
        return {
            font.sizePoints / 2 * static_cast<double>(longest),
            font.sizePoints * 1.25 * static_cast<double>(lines)};
    }
};

// What happened to a toast's window, in order.
struct ToastRecord {
    ToastContent content;
    std::vector<std::string> journal;
    double alpha = 1;
    bool onScreen = false;
    bool alive = true;
};

// Animations take their time on the given dispatch; alpha jumps at their end.
class HeadlessToasts final : public ToastViews {
public:
    explicit HeadlessToasts(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    std::unique_ptr<WindowPort> make(const ToastContent& content) override;

    std::vector<std::string> messages() const;

    std::vector<std::shared_ptr<ToastRecord>> made;

private:
    Dispatch& dispatch;
};

} // namespace tallowbay::headless
