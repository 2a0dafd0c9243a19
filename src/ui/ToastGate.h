#pragma once

#include <string>

namespace tallowbay {

class ToastPresenter;
class UserDefaults;

// Shows toasts to the users who want them: a toast itself does not ask.
//
// Thread: main queue.
class ToastGate {
public:
    ToastGate(const UserDefaults& preferences, ToastPresenter&);

    // Nothing while the preference toastsDisabled is set.
    void show(const std::string& message);

private:
    const UserDefaults& preferences;
    ToastPresenter& toasts;
};

} // namespace tallowbay
