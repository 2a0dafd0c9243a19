#pragma once

#include "base/Lifetime.h"
#include "platform/Clock.h"
#include "platform/Dispatch.h"
#include "platform/posix/files/FileVersion.h"

#include <string>
#include <vector>

namespace tallowbay::posix {

// A setting that only another program can tell: asked in the background, and again when the
// database that it stands in has changed. Thread: main queue.
class BackgroundSetting {
public:
    // The command line is run as it stands; without one, the setting stays empty. However often the
    // database changes, the program is run no more often than the interval says. The dispatch
    // outlives this object.
    BackgroundSetting(
        Dispatch&, std::vector<std::string> commandLine, std::filesystem::path database,
        std::chrono::milliseconds shortestInterval = std::chrono::seconds(3));

    // What the program printed last, maybe before the newest change. Empty as long as there is
    // nothing, and where the program fails.
    const std::optional<std::string>& lastKnown();

private:
    bool isDue() const;
    void ask();
    void take(std::optional<std::string>);

    Dispatch& dispatch;
    const std::vector<std::string> commandLine;
    const std::filesystem::path database;
    const std::chrono::milliseconds shortestInterval;
    std::optional<std::string> answer;
    std::optional<FileVersion> askedFor;
    std::optional<MonotonicTime> askedAt;
    bool asking = false;
    std::unique_ptr<SerialQueue> queue;
    Lifetime lifetime;
};

} // namespace tallowbay::posix
