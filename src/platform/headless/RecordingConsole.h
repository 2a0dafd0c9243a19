#pragma once

#include "platform/Console.h"

#include <mutex>
#include <string>
#include <vector>

namespace tallowbay::headless {

// Keeps the lines, for a test to read when no thread writes any more.
class RecordingConsole final : public Console {
public:
    void line(std::string_view text) override
    {
        const std::scoped_lock lock(mutex);
        if (!failsToWrite)
            lines.emplace_back(text);
    }

    std::vector<std::string> lines;
    bool failsToWrite = false;

private:
    std::mutex mutex;
};

} // namespace tallowbay::headless
