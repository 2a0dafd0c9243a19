#pragma once

#include "capture/ScreenshotLocation.h"
#include "platform/Platform.h"
#include "views/SetupNotice.h"

#include <functional>
#include <memory>

namespace tallowbay {

// The first start: shows what the program needs and remembers that the user has seen it.
//
// Thread: main queue.
class SetupFlow {
public:
    explicit SetupFlow(const Platform&);

    // The completion runs once, when the user presses the button. Closing the window leaves the
    // program as it is, and the next start shows it again.
    void show(std::function<void()> completion);
    bool visible() const { return notice && notice->isVisible(); }

private:
    std::vector<views::SetupNotice::Check> checks() const;
    void complete();

    const Platform platform;
    ScreenshotLocation location;
    std::function<void()> completion;
    std::unique_ptr<views::SetupNotice> notice;
};

} // namespace tallowbay
