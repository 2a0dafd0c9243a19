#pragma once

#include "desktop/support/ChildProcess.h"

#include <string>

namespace tallowbay::test {

// A message bus of its own for one session, gone with this object.
//
// A bus that does not start throws std::runtime_error with its own words.
class SessionBus {
public:
    // What the bus starts gets these variables.
    explicit SessionBus(const Environment& = {});

    const std::string& address() const { return busAddress; }

private:
    ChildProcess daemon;
    std::string busAddress;
};

} // namespace tallowbay::test
