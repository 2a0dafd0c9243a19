#pragma once

#include <filesystem>
#include <string>

namespace tallowbay {

// The right to be the only Tallowbay of the session, held until this object or the process ends.
//
// It is a name on the session's message bus, which later starts can talk to; where there is no bus,
// a lock on a file. If neither can be had, nobody is held off.
class SingleInstance {
public:
    enum class Result { first, another };

    // The lock file belongs to one display: sessions without a bus have nothing else in common.
    explicit SingleInstance(std::filesystem::path lockFile);
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;
    ~SingleInstance();

    // Needs the QCoreApplication if there is a bus.
    Result acquire(bool useBus);

private:
    Result acquireLock();

    const std::filesystem::path lockFile;
    int descriptor = -1;
};

// In the user's runtime folder, or among the temporary files with the user's number in its name.
std::filesystem::path instanceLockFile();

} // namespace tallowbay
