#include "platform/contract/FileEventsContract.h"
#include "platform/contract/FolderEventsContract.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/InotifyFileEvents.h"
#include "platform/linux/InotifyFolderEvents.h"
#include "platform/linux/LoopDispatch.h"
#include "platform/linux/TemporaryFolder.h"

#include <fstream>
#include <map>

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace tallowbay::linux_desktop {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

class InotifyBackend {
public:
    InotifyBackend() { makeFolder(root() / "watched"); }

    FileEvents& events() { return fileEvents; }
    FolderEvents& folderEvents() { return entryEvents; }
    fs::path root() { return temporary.path; }

    void write(const fs::path& path) { std::ofstream(path) << "data"; }
    void beginWriting(const fs::path& path)
    {
        writers[path] = std::ofstream(path);
        writers[path] << "da" << std::flush;
    }
    void finishWriting(const fs::path& path)
    {
        writers.at(path) << "ta";
        writers.erase(path);
    }
    void rename(const fs::path& from, const fs::path& to) { fs::rename(from, to); }
    void remove(const fs::path& path) { fs::remove_all(path); }
    void makeFolder(const fs::path& path) { fs::create_directories(path); }

    bool runUntil(const std::function<bool()>& condition) { return loop.runUntil(condition, 30s); }
    // What is late in coming is not a failure that a longer wait would find: the tests that expect
    // something wait for it, those that expect nothing more get a fair chance to see it.
    void settle()
    {
        loop.runUntil([] { return false; }, 350ms);
    }

private:
    TemporaryFolder temporary;
    LoopDispatch loop;
    InotifyFileEvents fileEvents{loop};
    InotifyFolderEvents entryEvents{loop};
    std::map<fs::path, std::ofstream> writers;
};

} // namespace

} // namespace tallowbay::linux_desktop

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Inotify, FileEventsContract, linux_desktop::InotifyBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Inotify, FolderEventsContract, linux_desktop::InotifyBackend);
} // namespace tallowbay::contract
