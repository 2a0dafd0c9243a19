#pragma once

#include "platform/Dispatch.h"

#include <functional>
#include <memory>
#include <utility>

namespace tallowbay::posix {

// Calls a handler on the main queue until it is destroyed.
template <typename... Arguments> class MainQueueHandler {
public:
    using Handler = std::function<void(const Arguments&...)>;
    MainQueueHandler(Dispatch& dispatch, Handler handler)
        : dispatch(dispatch)
        , handler(std::make_shared<Handler>(std::move(handler)))
    {
    }

    void post(Arguments... arguments) const
    {
        dispatch.mainAsync([weak = std::weak_ptr(handler), arguments...] {
            // The handler may end its own subscription.
            if (const auto alive = weak.lock())
                (*alive)(arguments...);
        });
    }

private:
    Dispatch& dispatch;
    std::shared_ptr<Handler> handler;
};

} // namespace tallowbay::posix
