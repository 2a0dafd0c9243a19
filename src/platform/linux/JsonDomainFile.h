#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>

#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace tallowbay::linux_desktop {

// One JSON object in a file that several processes read and write.
//
// Thread: one at a time. Reading costs one look at the file's status while nobody has changed it.
// A file that cannot be read or understood counts as empty; it is moved aside, to NAME.damaged or
// NAME.damaged.2 and so on, before something else takes its place.
class JsonDomainFile {
public:
    explicit JsonDomainFile(std::filesystem::path);

    // As the file is now. Good until the next call of any member.
    const nlohmann::json& read() const;

    // Changes the newest document; no other process writes between its reading and its writing.
    // True if the result is on the disk.
    bool update(const std::function<void(nlohmann::json&)>& change);

private:
    // Every writer makes a new file; the number of a deleted one may come again, within one tick of
    // the clock that dates files. So what was read of a young file is not relied on.
    struct Version {
        explicit Version(const struct stat&);
        bool operator==(const Version&) const = default;

        dev_t device;
        ino_t number;
        off_t size;
        std::chrono::nanoseconds modified;
    };

    bool upToDate() const;
    void load() const;
    bool setAside() const;

    const std::filesystem::path path;
    mutable nlohmann::json document = nlohmann::json::object();
    mutable std::optional<Version> version; // empty: nothing was read that can be relied on
    mutable bool damaged = false;
};

} // namespace tallowbay::linux_desktop
