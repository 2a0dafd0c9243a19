#pragma once

#include "platform/Clock.h"
#include "platform/FileSystem.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace tallowbay {

// The screenshots whose processing is under way, or ended well a moment ago: by these a further
// report of one is recognised, also if it was renamed meanwhile.
//
// Thread: main queue.
class AcceptedScreenshots {
public:
    AcceptedScreenshots(const FileSystem&, const Clock&);

    // True if the screenshot is to be processed; it is under way from now on. False if it is known:
    // another one with that copy is under way, or it is one of these files, which was moved. A copy
    // of a file, or a further name beside the first, is a screenshot of its own.
    bool begin(const std::filesystem::path& screenshot, const std::filesystem::path& copy);

    // The processing that makes this copy has ended. If it came to nothing, returns what was taken
    // for known meanwhile and is to be processed after all.
    std::optional<std::filesystem::path> end(const std::filesystem::path& copy, bool made);

private:
    struct Entry {
        std::filesystem::path file; // by its latest name
        std::filesystem::path copy;
        std::optional<FileIdentity> identity;
        MonotonicTime known; // when it was accepted, or its processing ended
        bool underWay = true;
        std::optional<std::filesystem::path> reportedAgain;
    };

    bool wasMoved(const Entry&, const std::optional<FileIdentity>& seenNow) const;
    void forgetOld();

    const FileSystem& fileSystem;
    const Clock& clock;
    std::vector<Entry> entries;
};

} // namespace tallowbay
