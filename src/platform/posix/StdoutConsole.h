#pragma once

#include "platform/Console.h"

#include <mutex>

#include <unistd.h>

namespace tallowbay::posix {

// Lines on a descriptor, unbuffered. The text is written as it stands: a line feed in a file name
// breaks the line. A reader that has gone away is no signal to us.
class StdoutConsole : public Console {
public:
    // The descriptor stays the caller's.
    explicit StdoutConsole(int descriptor = STDOUT_FILENO)
        : descriptor(descriptor)
    {
    }
    void line(std::string_view text) override;

private:
    const int descriptor;
    std::mutex mutex; // a pipe takes a long line in pieces
};

} // namespace tallowbay::posix
