#pragma once

#include "main/DesktopChoice.h"

#include <optional>
#include <string>

namespace tallowbay {

// The desktop session that the program was started in.

// Why the display of that desktop cannot be used, in one sentence for people; empty if it answers.
std::optional<std::string> displayProblem(DesktopKind);

// What does not work here although the program runs, in one sentence; empty where everything does.
std::optional<std::string> sessionLimits(DesktopKind);

// Whether a message bus belongs to the session. Asking the bus library itself would start one.
bool hasSessionBus();

} // namespace tallowbay
