#pragma once

#include "app/Command.h"

#include <string>

namespace tallowbay {

// What came of a command that was handed to the running program.
struct CommandReply {
    enum class Outcome { done, failed, notRunning };
    Outcome outcome = Outcome::done;
    std::string problem; // of a failure, in one sentence for people
    std::string answer{}; // where something was asked
};

// Hands a command to the running program over the session's message bus, and waits for its answer,
// ten seconds at most. Needs the QCoreApplication.
CommandReply sendCommand(Command);

// Asks how the running program fares; the answer is in lines for people. Waits as long. Needs the
// QCoreApplication.
CommandReply askForStatus();

// Lets the running program show itself; whether it did is not told. Needs the QCoreApplication.
void activateRunningProgram();

} // namespace tallowbay
