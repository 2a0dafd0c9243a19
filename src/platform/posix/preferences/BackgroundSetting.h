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
    // The program is run no more often, however often the database changes.
    struct Intervals {
        std::chrono::milliseconds shortest = std::chrono::seconds(3);

        // Once it has failed twice in a row: the setting most likely does not exist.
        std::chrono::milliseconds afterFailures = std::chrono::minutes(10);
    };

    // The command line is run as it stands; without one, the setting stays empty. The dispatch
    // outlives this object.
    BackgroundSetting(
        Dispatch&, std::vector<std::string> commandLine, std::filesystem::path database);
    BackgroundSetting(
        Dispatch&, std::vector<std::string> commandLine, std::filesystem::path database, Intervals);

    // What the program printed last, maybe before the newest change. Empty as long as it has told
    // nothing. A run that fails takes nothing back, and is tried again.
    const std::optional<std::string>& lastKnown();

private:
    bool isDue() const;
    std::chrono::milliseconds interval() const;
    void ask();
    void take(std::optional<std::string>);

    Dispatch& dispatch;
    const std::vector<std::string> commandLine;
    const std::filesystem::path database;
    const Intervals intervals;
    std::optional<std::string> answer;
    std::optional<FileVersion> askedFor;
    std::optional<MonotonicTime> askedAt;
    bool asking = false;
    int failures = 0; // since the last answer
    std::unique_ptr<SerialQueue> queue;
    Lifetime lifetime;
};

} // namespace tallowbay::posix
