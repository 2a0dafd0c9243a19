#include "ui/ToastGate.h"

#include "platform/UserDefaults.h"
#include "ui/ToastWindow.h"

namespace tallowbay {

ToastGate::ToastGate(const UserDefaults& preferences, ToastPresenter& toasts)
    : preferences(preferences)
    , toasts(toasts)
{
}

void ToastGate::show(const std::string& message)
{
    if (!boolValue(preferences, preference::toastsDisabled))
        toasts.show(message);
}

} // namespace tallowbay
