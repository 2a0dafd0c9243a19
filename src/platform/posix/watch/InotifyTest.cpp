#include "platform/contract/FileEventsContract.h"
#include "platform/contract/FolderEventsContract.h"
#include "platform/posix/FileDescriptor.h"
#include "platform/posix/watch/InotifyFileEvents.h"
#include "platform/posix/watch/InotifyFolderEvents.h"
#include "support/LoopDispatch.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <map>
#include <mutex>
#include <thread>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowbay::posix {

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
    test::TemporaryFolder temporary;
    test::LoopDispatch loop;
    InotifyFileEvents fileEvents{loop};
    InotifyFolderEvents entryEvents{loop};
    std::map<fs::path, std::ofstream> writers;
};

// Beyond what every backend does.
class InotifyFileEventsTest : public testing::Test {
protected:
    InotifyFileEventsTest() { fs::create_directory(folder); }

    void start() { start(folder); }
    void start(const fs::path& watched, std::chrono::milliseconds latency = 500ms)
    {
        const FileEvents::Watch watch{watched, FileEvents::Depth::withSubfolders, 0ms, latency};
        auto started = events.start(
            watch,
            {[this](const std::vector<fs::path>& paths) {
                 for (const auto& path : paths)
                     ++reported[path];
             },
             [this](FileEvents::Coverage now) { coverage.push_back(now); }});
        ASSERT_TRUE(started);
        token = std::move(*started);
    }
    static void write(const fs::path& path) { std::ofstream(path) << "data"; }
    bool isReported(const fs::path& path)
    {
        return loop.runUntil([&] { return reported.contains(path); }, 30s);
    }
    bool isReported(const char* name) { return isReported(folder / name); }
    bool isReportedOnce(const char* name)
    {
        const bool once = isReported(name);
        settle();
        return once && reported[folder / name] == 1;
    }
    void settle(std::chrono::milliseconds time = 350ms)
    {
        loop.runUntil([] { return false; }, time);
    }
    FileDescriptor openForWriting(const fs::path& path, int flags = 0)
    {
        return FileDescriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, 0644));
    }

    test::TemporaryFolder temporary;
    const fs::path folder = temporary.path / "watched";
    test::LoopDispatch loop;
    static constexpr std::size_t mostFolders = 1000;
    InotifyFileEvents events{loop, mostFolders, 50ms};
    std::map<fs::path, int> reported;
    std::vector<FileEvents::Coverage> coverage; // as it was told
    Subscription token;
};

TEST_F(InotifyFileEventsTest, ReportsACompleteFileWithoutWaitingForTheLatency)
{
    start(folder, 10min);
    write(folder / "new.png");
    EXPECT_TRUE(isReported("new.png"));
}

TEST_F(InotifyFileEventsTest, ReportsAHardLink)
{
    write(temporary.path / "outside");
    start();
    fs::create_hard_link(temporary.path / "outside", folder / "link");
    EXPECT_TRUE(isReportedOnce("link"));
}

TEST_F(InotifyFileEventsTest, ReportsAHardLinkOnceTheWriterOfItsOtherNameIsDone)
{
    auto writer = openForWriting(temporary.path / "outside");
    EXPECT_EQ(::write(writer.get(), "x", 1), 1);
    start();
    fs::create_hard_link(temporary.path / "outside", folder / "link");
    settle();
    EXPECT_TRUE(reported.empty());
    writer = FileDescriptor();
    EXPECT_TRUE(isReported("link"));
}

TEST_F(InotifyFileEventsTest, ReportsAFileThatGetsItsNameWhileItIsWritten)
{
    auto writer = FileDescriptor(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0644));
    if (!writer)
        GTEST_SKIP() << "the file system makes no files without a name";
    start();
    EXPECT_EQ(::write(writer.get(), "x", 1), 1);
    const auto unnamed = "/proc/self/fd/" + std::to_string(writer.get());
    const auto path = folder / "named";
    ASSERT_EQ(::linkat(AT_FDCWD, unnamed.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW), 0);
    settle();
    EXPECT_TRUE(reported.empty());
    writer = FileDescriptor();
    EXPECT_TRUE(isReportedOnce("named"));
}

TEST_F(InotifyFileEventsTest, ReportsASymbolicLinkToAFile)
{
    write(temporary.path / "outside");
    fs::create_directory(temporary.path / "outside folder");
    write(temporary.path / "outside folder" / "file");
    start();
    fs::create_symlink("nowhere", folder / "dangling");
    fs::create_symlink(temporary.path / "outside folder", folder / "to a folder");
    fs::create_symlink(temporary.path / "outside", folder / "link");
    EXPECT_TRUE(isReportedOnce("link"));
    EXPECT_EQ(reported.size(), 1u);
}

TEST_F(InotifyFileEventsTest, ReportsAFileThatIsMovedInWhileItIsWritten)
{
    auto writer = openForWriting(temporary.path / "outside");
    EXPECT_EQ(::write(writer.get(), "x", 1), 1);
    start();
    fs::rename(temporary.path / "outside", folder / "inside");
    settle();
    EXPECT_TRUE(reported.empty());
    writer = FileDescriptor();
    EXPECT_TRUE(isReportedOnce("inside"));
}

TEST_F(InotifyFileEventsTest, ReportsAFileOnceTheLastOfItsWritersIsDone)
{
    start();
    auto first = openForWriting(folder / "file");
    auto second = openForWriting(folder / "file");
    EXPECT_EQ(::write(first.get(), "x", 1), 1);
    first = FileDescriptor();
    settle();
    EXPECT_TRUE(reported.empty());
    second = FileDescriptor();
    EXPECT_TRUE(isReportedOnce("file"));
}

TEST_F(InotifyFileEventsTest, ReportsNoFileThatIsGoneBeforeItsWriterIsDone)
{
    start();
    auto writer = openForWriting(folder / "file");
    EXPECT_EQ(::write(writer.get(), "x", 1), 1);
    fs::remove(folder / "file");
    writer = FileDescriptor();
    settle();
    EXPECT_TRUE(reported.empty());
}

TEST_F(InotifyFileEventsTest, HoldsAnEmptyFileBackForTheLatency)
{
    start(folder, 200ms);
    const auto begin = std::chrono::steady_clock::now();
    openForWriting(folder / "empty");
    EXPECT_TRUE(isReported("empty"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 200ms);
}

TEST_F(InotifyFileEventsTest, ReportsADownloadThatReplacesItsPlaceholderOnce)
{
    start(folder, 10min);
    openForWriting(folder / "Screenshot.png");
    write(folder / "Screenshot.png.part");
    settle(50ms);
    EXPECT_FALSE(reported.contains(folder / "Screenshot.png"));
    fs::rename(folder / "Screenshot.png.part", folder / "Screenshot.png");
    EXPECT_TRUE(isReportedOnce("Screenshot.png"));
}

TEST_F(InotifyFileEventsTest, NamesFilesBelowTheFolderAsItWasGiven)
{
    fs::create_symlink(folder, temporary.path / "link");
    start(temporary.path / "link");
    write(folder / "one");
    EXPECT_TRUE(isReported(temporary.path / "link" / "one"));
    fs::create_directory(folder / "sub");
    write(folder / "sub" / "two");
    EXPECT_TRUE(isReported(temporary.path / "link" / "sub" / "two"));
}

TEST_F(InotifyFileEventsTest, FollowsALinkThatIsPointedElsewhere)
{
    const auto link = temporary.path / "link";
    fs::create_symlink(folder, link);
    start(link);
    fs::create_directory(temporary.path / "elsewhere");
    write(temporary.path / "elsewhere" / "there");
    fs::create_symlink(temporary.path / "elsewhere", temporary.path / "new");
    fs::rename(temporary.path / "new", link);
    EXPECT_TRUE(isReported(link / "there"));
    write(folder / "left behind");
    write(temporary.path / "elsewhere" / "later");
    EXPECT_TRUE(isReported(link / "later"));
    EXPECT_EQ(reported.size(), 2u);
}

TEST_F(InotifyFileEventsTest, LeavesAFolderThatIsMovedAway)
{
    start();
    fs::rename(folder, temporary.path / "away");
    settle();
    write(temporary.path / "away" / "file");
    settle();
    EXPECT_TRUE(reported.empty());
    fs::create_directory(folder);
    write(folder / "new");
    EXPECT_TRUE(isReported("new"));
}

TEST_F(InotifyFileEventsTest, LeavesASubfolderThatIsMovedAway)
{
    fs::create_directories(folder / "sub" / "below");
    start();
    fs::rename(folder / "sub", temporary.path / "away");
    write(temporary.path / "away" / "one");
    write(temporary.path / "away" / "below" / "two");
    settle();
    EXPECT_TRUE(reported.empty());
}

TEST_F(InotifyFileEventsTest, MistakesNoFolderThatWasMovedAwayForItsSuccessor)
{
    fs::create_directory(folder / "sub");
    start();
    fs::rename(folder / "sub", temporary.path / "away");
    fs::create_directory(folder / "sub");
    write(folder / "sub" / "file");
    EXPECT_TRUE(isReported(folder / "sub" / "file"));
    write(temporary.path / "away" / "file");
    settle();
    EXPECT_EQ(reported[folder / "sub" / "file"], 1);
}

TEST_F(InotifyFileEventsTest, NamesFilesOfARenamedSubfolderAnew)
{
    fs::create_directories(folder / "old" / "below");
    start();
    fs::rename(folder / "old", folder / "new");
    write(folder / "new" / "below" / "file");
    EXPECT_TRUE(isReported(folder / "new" / "below" / "file"));
    EXPECT_FALSE(reported.contains(folder / "old" / "below" / "file"));
}

TEST_F(InotifyFileEventsTest, WatchesWhatIsMountedOverTheFolder)
{
    start();
    if (::mount("none", folder.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "may not mount here";
    write(folder / "on the mount");
    EXPECT_TRUE(isReported("on the mount"));
    write(folder / "later");
    EXPECT_TRUE(isReported("later"));
    EXPECT_EQ(::umount2(folder.c_str(), MNT_DETACH), 0);
    settle();
    write(folder / "below the mount");
    EXPECT_TRUE(isReported("below the mount"));
}

TEST_F(InotifyFileEventsTest, SurvivesAFolderThatIsReplacedOverAndOver)
{
    start();
    for (int i = 0; i < 50; ++i) {
        fs::remove_all(folder);
        fs::create_directory(folder);
        write(folder / std::to_string(i));
    }
    EXPECT_TRUE(isReported("49"));
    write(folder / "last");
    EXPECT_TRUE(isReported("last"));
}

TEST_F(InotifyFileEventsTest, ReportsEachFileOfManyWritersOnceAndWhole)
{
    constexpr int writerCount = 4;
    constexpr int filesOfEach = 50;
    int incomplete = 0;
    auto started = events.start({folder}, {[&](const std::vector<fs::path>& paths) {
                                    for (const auto& path : paths) {
                                        ++reported[path];
                                        incomplete += fs::file_size(path) != 3 * 4096;
                                    }
                                }});
    ASSERT_TRUE(started);
    std::vector<std::jthread> writers;
    for (int writer = 0; writer < writerCount; ++writer)
        writers.emplace_back([&, writer] {
            for (int i = 0; i < filesOfEach; ++i) {
                std::ofstream file(folder / (std::to_string(writer) + "." + std::to_string(i)));
                for (int piece = 0; piece < 3; ++piece) {
                    file << std::string(4096, 'x') << std::flush;
                    std::this_thread::sleep_for(std::chrono::microseconds(i * 20));
                }
            }
        });
    const auto all = writerCount * filesOfEach;
    EXPECT_TRUE(loop.runUntil([&] { return reported.size() == all; }, 30s));
    settle();
    EXPECT_EQ(incomplete, 0);
    for (const auto& [path, times] : reported)
        EXPECT_EQ(times, 1) << path;
}

// The last ones are come to when the watch has begun.
TEST_F(InotifyFileEventsTest, GoesThroughManyFoldersWithoutHoldingUpTheStart)
{
    const auto below = [this](int i) { return folder / std::to_string(i) / "below"; };
    const int count = 400;
    for (int i = 0; i < count; ++i) {
        fs::create_directories(below(i));
        write(below(i) / "old");
    }
    settle(); // the clock of the files goes on
    start();
    for (const int i : {0, count / 2, count - 1})
        write(below(i) / "new");
    for (const int i : {0, count / 2, count - 1})
        EXPECT_TRUE(isReported(below(i) / "new")) << i;
    settle();
    EXPECT_EQ(reported.size(), 3u);
}

// How many folders this process watches.
std::size_t watchCount()
{
    std::size_t count = 0;
    for (const auto& file : fs::directory_iterator("/proc/self/fdinfo")) {
        std::ifstream lines(file.path());
        for (std::string line; std::getline(lines, line);)
            count += line.starts_with("inotify wd:") ? 1 : 0;
    }
    return count;
}

using Coverages = std::vector<FileEvents::Coverage>;

TEST_F(InotifyFileEventsTest, TakesNoMoreWatchesThanItsBoundAndSaysSoOnce)
{
    for (int i = 0; i < 600; ++i)
        fs::create_directories(folder / std::to_string(i) / "below");
    start();
    EXPECT_TRUE(loop.runUntil([this] { return !coverage.empty(); }, 30s));
    fs::create_directories(folder / "late");
    write(folder / "file");
    EXPECT_TRUE(isReportedOnce("file")) << "the nearest folders are watched";
    // One more while it is tried whether there is another.
    EXPECT_TRUE(loop.runUntil([] { return watchCount() == mostFolders; }, 30s));
    EXPECT_EQ(coverage, Coverages{FileEvents::Coverage::nearestFolders});
}

TEST_F(InotifyFileEventsTest, SaysNothingOfABoundThatIsNotMet)
{
    fs::create_directories(folder / "one" / "below");
    start();
    write(folder / "one" / "below" / "file");
    EXPECT_TRUE(isReported(folder / "one" / "below" / "file"));
    EXPECT_EQ(coverage, Coverages{});
    EXPECT_EQ(watchCount(), 3u);
}

// Each folder had a bound of its own, and many of them together took all that the user has.
TEST_F(InotifyFileEventsTest, TakesNoMoreWatchesThanItsBoundForAllFoldersTogether)
{
    const auto second = temporary.path / "second";
    for (int i = 0; i < 600; ++i) {
        fs::create_directories(folder / std::to_string(i));
        fs::create_directories(second / std::to_string(i));
    }
    start();
    EXPECT_TRUE(loop.runUntil([] { return watchCount() == 601; }, 30s));
    auto other = std::move(token);
    start(second);
    EXPECT_TRUE(loop.runUntil([this] { return !coverage.empty(); }, 30s));
    settle();
    EXPECT_TRUE(loop.runUntil([] { return watchCount() == mostFolders; }, 30s));

    write(second / "file");
    EXPECT_TRUE(isReported(second / "file"));
}

TEST_F(InotifyFileEventsTest, TakesTheWatchesThatAnotherFolderGivesBackAndSaysSo)
{
    const auto second = temporary.path / "second";
    for (int i = 0; i < 600; ++i)
        fs::create_directories(folder / std::to_string(i));
    for (int i = 0; i < 600; ++i) {
        fs::create_directories(second / "below" / std::to_string(i));
        write(second / "below" / std::to_string(i) / "old");
    }
    start();
    EXPECT_TRUE(loop.runUntil([] { return watchCount() == 601; }, 30s));
    auto other = std::move(token);
    start(second);
    EXPECT_TRUE(loop.runUntil([this] { return !coverage.empty(); }, 30s));
    for (int i = 0; i < 600; ++i)
        write(second / "below" / std::to_string(i) / "file");
    other.reset();
    EXPECT_TRUE(loop.runUntil([this] { return coverage.size() == 2; }, 30s));
    EXPECT_EQ(
        coverage, (Coverages{FileEvents::Coverage::nearestFolders, FileEvents::Coverage::whole}));
    EXPECT_EQ(watchCount(), 602u);
    EXPECT_TRUE(loop.runUntil([this] { return reported.size() == 600; }, 30s))
        << "what came meanwhile, and nothing else";
}

TEST_F(InotifyFileEventsTest, TakesTheWatchesThatItsOwnFoldersGiveBack)
{
    for (int i = 0; i < 1200; ++i)
        fs::create_directories(folder / std::to_string(i));
    start();
    EXPECT_TRUE(loop.runUntil([] { return watchCount() == mostFolders; }, 30s));
    fs::create_directory(temporary.path / "away");
    for (int i = 0; i < 1200; i += 4) {
        const auto moved = std::to_string(i + 2);
        fs::remove(folder / std::to_string(i));
        fs::rename(folder / moved, temporary.path / "away" / moved);
    }
    EXPECT_TRUE(loop.runUntil([] { return watchCount() == 601; }, 30s));
    EXPECT_TRUE(loop.runUntil([this] { return coverage.size() == 2; }, 30s));
    EXPECT_EQ(coverage.back(), FileEvents::Coverage::whole);
}

// What the process table says of a thread under that word.
std::string threadStatus(const fs::path& thread, const std::string& word)
{
    std::ifstream status(thread / "status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(word))
            return line.substr(line.find('\t') + 1);
    return {};
}

TEST_F(InotifyFileEventsTest, LooksAtFilesOnAThreadThatNoSignalReaches)
{
    start();
    write(folder / "file");
    EXPECT_TRUE(isReported("file"));
    int threads = 0;
    for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
        if (threadStatus(thread, "Name:") != "file events")
            continue;
        ++threads;
        // SIGIO, the signal of a broken lease, is number 29.
        const auto blocked = std::stoull(threadStatus(thread, "SigBlk:"), nullptr, 16);
        EXPECT_NE(blocked & (1ULL << (29 - 1)), 0u);
    }
    EXPECT_EQ(threads, 1);
}

// Holds back whoever hands something to the main queue while it is closed.
class GatedDispatch : public test::LoopDispatch {
public:
    void mainAsync(Task task) override
    {
        const std::scoped_lock passing(gate);
        test::LoopDispatch::mainAsync(std::move(task));
    }

    std::mutex gate;
};

TEST(InotifyOverflowTest, ReportsEveryFileAfterEventsWereLost)
{
    test::TemporaryFolder temporary;
    GatedDispatch dispatch;
    InotifyFileEvents events(dispatch);
    std::map<fs::path, int> reported;
    std::ofstream(temporary.path / "old") << "data";
    const auto token = events.start({temporary.path}, {[&](const std::vector<fs::path>& paths) {
                                        for (const auto& path : paths)
                                            ++reported[path];
                                    }});
    int limit = 0;
    std::ifstream("/proc/sys/fs/inotify/max_queued_events") >> limit;
    ASSERT_GT(limit, 0);
    {
        const std::scoped_lock closed(dispatch.gate);
        std::ofstream(temporary.path / "first") << "data";
        for (int i = 0; i < limit; ++i) {
            const auto path = temporary.path / std::to_string(i % 2);
            ::close(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
            ::unlink(path.c_str());
        }
        std::ofstream(temporary.path / "lost") << "data";
    }
    EXPECT_TRUE(dispatch.runUntil([&] { return reported.contains(temporary.path / "lost"); }, 30s));
    EXPECT_TRUE(dispatch.runUntil([&] { return reported.contains(temporary.path / "old"); }, 30s));
    std::ofstream(temporary.path / "later") << "data";
    EXPECT_TRUE(
        dispatch.runUntil([&] { return reported.contains(temporary.path / "later"); }, 30s));
}

constexpr int cannotTell = 77;

bool setLimit(const std::string& name, int count)
{
    return static_cast<bool>(std::ofstream("/proc/sys/user/" + name) << count << std::flush);
}

// In a child of a user namespace of its own, whose limits are nobody else's. True is good.
int statusInNamespace(const std::string& limit, const std::function<bool()>& passes)
{
    const auto child = ::fork();
    if (child != 0) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
    }
    if (::unshare(CLONE_NEWUSER) != 0 || !setLimit(limit, 0))
        ::_exit(cannotTell);
    ::_exit(passes() ? 0 : 1);
}

TEST(InotifyLimitTest, FailsWhereTheSystemGivesNoMeansToWatch)
{
    const test::TemporaryFolder temporary;
    const int status = statusInNamespace("max_inotify_instances", [&] {
        test::LoopDispatch loop;
        const auto files = InotifyFileEvents(loop).start({temporary.path}, {[](const auto&) {}});
        const auto entries = InotifyFolderEvents(loop).start(temporary.path, [] {});
        return !files && !entries;
    });
    if (status == cannotTell)
        GTEST_SKIP() << "may not make a user namespace here";
    EXPECT_EQ(status, 0);
}

// It was said that the folder had too many below it, and so for ever.
TEST(InotifyLimitTest, SaysThatNothingIsWatchedUntilTheSystemHasWatchesAgain)
{
    const test::TemporaryFolder temporary;
    const int status = statusInNamespace("max_inotify_watches", [&] {
        test::LoopDispatch loop;
        InotifyFileEvents events(loop);
        std::vector<FileEvents::Coverage> told;
        bool reported = false;
        const auto token = events.start(
            {temporary.path},
            {[&](const auto&) { reported = true; },
             [&](FileEvents::Coverage now) { told.push_back(now); }});
        if (!token || !loop.runUntil([&] { return !told.empty(); }, 30s)
            || told != std::vector{FileEvents::Coverage::nothing})
            return false;
        std::ofstream(temporary.path / "meanwhile") << "data";
        setLimit("max_inotify_watches", 10);
        return loop.runUntil([&] { return reported && told.size() == 2; }, 30s)
            && told.back() == FileEvents::Coverage::whole;
    });
    if (status == cannotTell)
        GTEST_SKIP() << "may not make a user namespace here";
    EXPECT_EQ(status, 0);
}

} // namespace

} // namespace tallowbay::posix

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Inotify, FileEventsContract, posix::InotifyBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Inotify, FolderEventsContract, posix::InotifyBackend);
} // namespace tallowbay::contract
