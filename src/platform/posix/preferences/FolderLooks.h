#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace tallowbay::posix {

// Which folders there are, told without being held up by one that does not answer, as on a network
// that is gone: a look is waited for only a moment, and until it is done what was seen before
// counts. Thread: one at a time.
class FolderLooks {
public:
    struct Folder {
        std::uint64_t device;
        std::uint64_t number;
        bool operator==(const Folder&) const = default;
    };

    // The folder at a path, links followed; empty if there is none. Called on another thread, maybe
    // beyond the life of this object.
    using Look = std::function<std::optional<Folder>(const std::filesystem::path&)>;
    static std::optional<Folder> atPath(const std::filesystem::path&);

    static constexpr std::chrono::milliseconds usualPatience{250};
    explicit FolderLooks(Look look = atPath, std::chrono::milliseconds patience = usualPatience);
    ~FolderLooks();
    FolderLooks(const FolderLooks&) = delete;
    FolderLooks& operator=(const FolderLooks&) = delete;

    // Looks anew at all that was asked for lately: one caller may ask for other folders than
    // another.
    void refresh();

    // As of the last refresh, or of now for what was not asked for then.
    bool isThere(const std::filesystem::path& path) { return at(path).has_value(); }
    bool areOne(const std::filesystem::path&, const std::filesystem::path&);

private:
    struct Entry {
        std::optional<Folder> folder;
        int idleRefreshes = 0; // since it was asked for
    };
    class Worker;

    const std::optional<Folder>& at(const std::filesystem::path&);
    void lookAt(std::vector<std::filesystem::path>);

    const std::chrono::milliseconds patience;
    const std::shared_ptr<Worker> worker;
    std::map<std::filesystem::path, Entry> entries;
};

} // namespace tallowbay::posix
