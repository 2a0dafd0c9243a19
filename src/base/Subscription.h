#pragma once

#include <functional>
#include <utility>

namespace tallowbay {

// A registration that lasts as long as this object: destroying it ends the watch, the timer or
// whatever it stands for. Move-only; may be empty.
//
// Thread: to be destroyed on the main queue. Destroying it inside the handler that it stands for
// is allowed; that handler then is not called again.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> end)
        : end(std::move(end))
    {
    }
    Subscription(Subscription&& other) noexcept
        : end(std::exchange(other.end, nullptr))
    {
    }
    Subscription& operator=(Subscription&& other) noexcept
    {
        if (this != &other) {
            reset();
            end = std::exchange(other.end, nullptr);
        }
        return *this;
    }
    ~Subscription() { reset(); }

    void reset()
    {
        if (auto ending = std::exchange(end, nullptr))
            ending();
    }
    explicit operator bool() const { return static_cast<bool>(end); }

private:
    std::function<void()> end;
};

} // namespace tallowbay
