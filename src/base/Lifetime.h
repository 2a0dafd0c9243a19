#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace tallowbay {

// Ties callbacks to their owner: a guarded function does nothing once the owner is gone. A class
// holds one as its last member, so that it goes first.
//
// Thread: guard() any; the guarded function and the destruction belong on the main queue. What may
// call guard() on another thread has to end before this object goes.
class Lifetime {
public:
    template <typename Function> auto guard(Function function) const
    {
        return [alive = std::weak_ptr<const char>(token),
                function = std::move(function)](auto&&... arguments) mutable {
            if (!alive.expired())
                std::invoke(function, std::forward<decltype(arguments)>(arguments)...);
        };
    }

private:
    std::shared_ptr<const char> token = std::make_shared<const char>();
};

} // namespace tallowbay
