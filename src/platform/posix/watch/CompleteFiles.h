#pragma once

#include "platform/Clock.h"
#include "platform/posix/files/FileLook.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace tallowbay::posix {

// Tells from signs of files which are complete, so that each is reported once, and as early as
// can be. Thread: one at a time.
class CompleteFiles {
public:
    using Look = std::function<FileLook(const std::filesystem::path&)>;

    // Some programs put an empty file in the place of the one to come: an empty file is held back
    // for this long.
    CompleteFiles(std::chrono::milliseconds emptyHold, Look);

    enum class Sign {
        created, // its writer may only just have begun
        closed, // by a writer
        found, // moved in, or seen when the folder was listed
    };
    void notice(const std::filesystem::path&, Sign, MonotonicTime now);

    // A writer has closed some file, whatever its name: those that wait for one are looked at.
    void lookAgain(MonotonicTime now);

    void forget(const std::filesystem::path&);

    // The files that are complete, in the order in which they were noticed; then forgotten.
    std::vector<std::filesystem::path> takeComplete(MonotonicTime now);

    // When takeComplete() may have news, apart from new signs. Empty if nothing is waited for.
    std::optional<MonotonicTime> nextLook() const;

private:
    struct Waiting {
        std::uint64_t order;
        MonotonicTime noticed;
        MonotonicTime due; // of the next look
        std::chrono::milliseconds pause; // before the look after that
        bool createdOnly;
    };
    enum class Verdict { complete, wait, drop };
    Verdict judge(const std::filesystem::path&, Waiting&, MonotonicTime now) const;
    Verdict waitForWriter(Waiting&, MonotonicTime now) const;

    const std::chrono::milliseconds emptyHold;
    const Look look;
    std::unordered_map<std::string, Waiting> files;
    std::uint64_t lastOrder = 0;
};

} // namespace tallowbay::posix
