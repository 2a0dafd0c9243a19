#pragma once

#include <optional>
#include <string>

namespace tallowbay {

// The desktop session that the program was started in, as the environment tells.

// Why no window can be shown here, in one sentence for people; empty if one can.
std::optional<std::string> displayProblem();

// What does not work here although the program runs, in one sentence; empty where everything does.
std::optional<std::string> sessionLimits();

// Whether a message bus belongs to the session. Asking the bus library itself would start one.
bool hasSessionBus();

} // namespace tallowbay
