#pragma once

#include "platform/FileEvents.h"
#include "platform/FileSystem.h"
#include "platform/FolderEvents.h"
#include "platform/headless/VirtualTime.h"

#include <map>
#include <memory>
#include <set>
#include <string>

namespace tallowbay::headless {

// A disk in memory. Folders above a created entry come by themselves.
class MemoryFileSystem final : public FileSystem {
public:
    enum class Change { fileCompleted, entryCame, entryWent };
    using Listener = std::function<void(const std::filesystem::path&, Change)>;

    explicit MemoryFileSystem(const Clock& clock);

    bool exists(const std::filesystem::path&) const override;
    bool isDirectory(const std::filesystem::path&) const override;
    std::optional<WallTime> creationDate(const std::filesystem::path&) const override;
    std::optional<WallTime> modificationDate(const std::filesystem::path&) const override;
    std::optional<FileIdentity> identity(const std::filesystem::path&) const override;
    std::optional<std::uintmax_t> size(const std::filesystem::path&) const override;
    std::optional<std::vector<std::filesystem::path>> list(
        const std::filesystem::path& folder) const override;
    bool createFolders(const std::filesystem::path&) override;
    bool remove(const std::filesystem::path&) override;
    std::optional<std::string> read(const std::filesystem::path&) const override;
    bool writeAtomically(const std::filesystem::path&, std::string_view bytes) override;
    std::filesystem::path homeFolder() const override { return "/home/u"; }
    std::optional<std::filesystem::path> homeFolderOf(const std::string& user) const override;
    std::optional<std::filesystem::path> makeTemporaryFolder() override;

    // A file that is written and closed at once.
    void create(const std::filesystem::path&, std::string bytes = "data");

    // A file that a writer holds open until finishWriting().
    void beginWriting(const std::filesystem::path&, std::string bytes = "da");
    void finishWriting(const std::filesystem::path&, std::string bytes = "data");

    void rename(const std::filesystem::path& from, const std::filesystem::path& to);
    void link(const std::filesystem::path& file, const std::filesystem::path& furtherName);
    void setCreationDate(const std::filesystem::path&, std::optional<WallTime>);
    void setModificationDate(const std::filesystem::path&, WallTime);
    bool hasChangedWithin(std::chrono::milliseconds, const std::filesystem::path&) const;

    // From now on nothing below this folder can be changed, or the folder not be listed.
    void makeReadOnly(const std::filesystem::path& folder) { readOnly.insert(folder); }
    void makeUnlistable(const std::filesystem::path& folder) { unlistable.insert(folder); }

    // The other users of the machine, and how often one was asked for.
    std::map<std::string, std::filesystem::path> homes{{"v", "/home/v"}};
    mutable int homesAskedFor = 0;

    // Called after every change, inside the call that made it, until the token ends.
    Subscription listen(Listener);

private:
    struct Node {
        bool folder = false;
        std::string bytes;
        std::optional<WallTime> created;
        WallTime modified;
        std::uint64_t number = 0;
    };

    const Node* find(const std::filesystem::path&) const;
    bool writable(const std::filesystem::path&) const;
    Node& put(const std::filesystem::path&, bool folder);
    void tell(const std::filesystem::path&, Change) const;

    const Clock& clock;
    std::map<std::filesystem::path, Node> nodes;
    std::set<std::filesystem::path> readOnly;
    std::set<std::filesystem::path> unlistable;
    std::map<int, std::shared_ptr<Listener>> listeners;
    int lastListener = 0;
    int lastTemporaryFolder = 0;
    std::uint64_t lastNode = 0;
};

// Reports complete files of the disk in memory; a test may also emit an event by hand.
class MemoryFileEvents final : public FileEvents {
public:
    MemoryFileEvents(MemoryFileSystem& files, Dispatch& dispatch)
        : files(files)
        , dispatch(dispatch)
    {
    }

    std::optional<Subscription> start(const Watch&, Handlers) override;

    // Reports the path to every stream that watches it, whatever the disk says.
    void emit(const std::filesystem::path&);
    void failNextStarts(int count = 1) { startsToFail = count; }

    // Tells every stream that so much of what it watches is watched from now on.
    void setCoverage(Coverage);

    struct Stream : Watch {
        Handlers handlers;
    };
    const std::map<int, std::shared_ptr<Stream>>& running() const { return streams; }

private:
    static bool isWatched(const Watch&, const std::filesystem::path& file);
    void report(const std::weak_ptr<Stream>&, const std::filesystem::path&);
    void reportRecent(const std::shared_ptr<Stream>&, const std::filesystem::path& folder);

    MemoryFileSystem& files;
    Dispatch& dispatch;
    std::map<int, std::shared_ptr<Stream>> streams;
    int lastStream = 0;
    int startsToFail = 0;
};

// Tells of entries that come and go in one folder of the disk in memory.
class MemoryFolderEvents final : public FolderEvents {
public:
    MemoryFolderEvents(MemoryFileSystem& files, Dispatch& dispatch)
        : files(files)
        , dispatch(dispatch)
    {
    }

    std::optional<Subscription> start(const std::filesystem::path& folder, Handler) override;

    std::size_t runningCount() const { return running; }

private:
    MemoryFileSystem& files;
    Dispatch& dispatch;
    std::size_t running = 0;
};

} // namespace tallowbay::headless
