#pragma once

#include "platform/Alerts.h"

namespace tallowbay::qt {

// Warnings in a dialog of their own, above other windows; the main queue goes on while it is open.
class QtAlerts final : public Alerts {
public:
    Subscription showWarning(const Alert&, Answer) override;
};

} // namespace tallowbay::qt
