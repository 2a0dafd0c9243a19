#include "platform/posix/watch/CompleteFiles.h"

#include "platform/posix/FileDescriptor.h"
#include "support/AsOrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <map>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;
using Paths = std::vector<fs::path>;
using Sign = CompleteFiles::Sign;
using Writers = FileLook::Writers;

class CompleteFilesTest : public testing::Test {
protected:
    void notice(const char* path, Sign sign) { files.notice(path, sign, now); }
    Paths take() { return files.takeComplete(now); }
    // Moves on to the next look that is wanted, and takes what is complete then.
    Paths takeNext()
    {
        const auto next = files.nextLook();
        if (!next)
            return {"nothing is waited for"};
        now = std::max(now, *next);
        return take();
    }

    std::map<fs::path, FileLook> disk;
    std::map<fs::path, int> looks;
    MonotonicTime now = MonotonicTime(1h);
    CompleteFiles files{500ms, [this](const fs::path& path) {
                            ++looks[path];
                            return disk[path];
                        }};

    static constexpr FileLook done{true, false, false, Writers::none};
    static constexpr FileLook empty{true, true, false, Writers::none};
    static constexpr FileLook busy{true, false, false, Writers::some};
    static constexpr FileLook unknown{true, false, false, Writers::unknown};
    static constexpr FileLook unknownLink{true, false, true, Writers::unknown};
};

TEST_F(CompleteFilesTest, TakesACompleteFileAtOnceAndOnce)
{
    for (const auto sign : {Sign::created, Sign::closed, Sign::found}) {
        disk["a"] = done;
        notice("a", sign);
        EXPECT_EQ(take(), Paths{"a"});
        EXPECT_EQ(take(), Paths{});
        EXPECT_EQ(files.nextLook(), std::nullopt);
    }
}

TEST_F(CompleteFilesTest, TakesFilesInTheOrderTheyWereNoticed)
{
    for (const char* path : {"c", "a", "d", "b"}) {
        disk[path] = done;
        notice(path, Sign::closed);
    }
    notice("c", Sign::closed);
    EXPECT_EQ(take(), (Paths{"c", "a", "d", "b"}));
}

TEST_F(CompleteFilesTest, DropsWhatIsNoFile)
{
    notice("gone", Sign::closed);
    EXPECT_EQ(take(), Paths{});
    EXPECT_EQ(files.nextLook(), std::nullopt);
}

TEST_F(CompleteFilesTest, WaitsForTheWriterWhateverTheSign)
{
    for (const auto sign : {Sign::created, Sign::closed, Sign::found}) {
        disk["a"] = busy;
        notice("a", sign);
        EXPECT_EQ(take(), Paths{});
        disk["a"] = done;
        EXPECT_EQ(takeNext(), Paths{"a"});
    }
}

TEST_F(CompleteFilesTest, LooksAgainSoonAndThenEverMoreRarely)
{
    disk["a"] = busy;
    notice("a", Sign::created);
    take();
    EXPECT_EQ(files.nextLook(), now + 1ms);
    for (int i = 0; i < 20; ++i)
        takeNext();
    EXPECT_EQ(files.nextLook(), now + 250ms);
}

TEST_F(CompleteFilesTest, LooksAtOnceWhenSomeWriterHasClosedAFile)
{
    disk["a"] = busy;
    notice("a", Sign::created);
    for (int i = 0; i < 20; ++i)
        takeNext();
    files.lookAgain(now);
    EXPECT_EQ(files.nextLook(), now);
    disk["a"] = done;
    EXPECT_EQ(take(), Paths{"a"});
}

TEST_F(CompleteFilesTest, LooksNoMoreOftenThanNeeded)
{
    disk["a"] = busy;
    notice("a", Sign::created);
    const auto start = now;
    while (now < start + 10s)
        takeNext();
    EXPECT_LE(looks["a"], 50);
}

TEST_F(CompleteFilesTest, HoldsAnEmptyFileBack)
{
    disk["a"] = empty;
    notice("a", Sign::closed);
    EXPECT_EQ(take(), Paths{});
    EXPECT_EQ(files.nextLook(), now + 500ms);
    EXPECT_EQ(takeNext(), Paths{"a"});
}

TEST_F(CompleteFilesTest, TakesAnEmptyFileOnceItHasGotItsContent)
{
    disk["a"] = empty;
    notice("a", Sign::closed);
    take();
    now += 100ms;
    disk["a"] = done;
    notice("a", Sign::found);
    EXPECT_EQ(take(), Paths{"a"});
}

TEST_F(CompleteFilesTest, HoldsAnEmptyFileNoLongerHoweverManySignsCome)
{
    disk["a"] = empty;
    const auto start = now;
    notice("a", Sign::created);
    for (; now < start + 500ms; now += 50ms) {
        notice("a", Sign::closed);
        EXPECT_EQ(take(), Paths{});
    }
    EXPECT_EQ(takeNext(), Paths{"a"});
}

TEST_F(CompleteFilesTest, TakesTheSignsWordWhereWritersCannotBeSeen)
{
    disk["a"] = unknown;
    notice("a", Sign::created);
    EXPECT_EQ(take(), Paths{}) << "its writer may have just begun";
    EXPECT_EQ(files.nextLook(), std::nullopt) << "and will be heard to close it";
    notice("a", Sign::closed);
    EXPECT_EQ(take(), Paths{"a"});
    notice("a", Sign::found);
    EXPECT_EQ(take(), Paths{"a"});
}

TEST_F(CompleteFilesTest, RemembersTheBetterSignWhereWritersCannotBeSeen)
{
    disk["a"] = unknown;
    notice("a", Sign::closed);
    notice("a", Sign::created);
    EXPECT_EQ(take(), Paths{"a"});
}

TEST_F(CompleteFilesTest, TakesALinkWhereWritersCannotBeSeen)
{
    disk["a"] = unknownLink;
    notice("a", Sign::created);
    EXPECT_EQ(take(), Paths{"a"});
}

TEST_F(CompleteFilesTest, ForgetsAFileThatItWaitsFor)
{
    disk["a"] = busy;
    notice("a", Sign::created);
    take();
    files.forget("a");
    EXPECT_EQ(files.nextLook(), std::nullopt);
}

class FileLookTest : public testing::Test {
protected:
    FileLookTest()
    {
        // As the thread that looks does.
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, &before);
        std::ofstream(file) << "data";
    }
    ~FileLookTest() override
    {
        const timespec atOnce{};
        sigset_t leaseBroken;
        sigemptyset(&leaseBroken);
        sigaddset(&leaseBroken, SIGIO);
        ::sigtimedwait(&leaseBroken, nullptr, &atOnce);
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }

    test::TemporaryFolder temporary;
    const fs::path file = temporary.path / "file";
    sigset_t before;
};

TEST_F(FileLookTest, SeesAFileWithoutWriters)
{
    const auto seen = lookAtFile(file);
    EXPECT_TRUE(seen.isFile);
    EXPECT_FALSE(seen.isEmpty);
    EXPECT_FALSE(seen.wasLinked);
    EXPECT_EQ(seen.writers, Writers::none);
}

TEST_F(FileLookTest, SeesThatAFileIsEmpty)
{
    fs::resize_file(file, 0);
    EXPECT_TRUE(lookAtFile(file).isEmpty);
}

TEST_F(FileLookTest, SeesWritersUnderAnyName)
{
    const auto link = temporary.path / "link";
    const auto symbolic = temporary.path / "symbolic";
    fs::create_hard_link(file, link);
    fs::create_symlink(file, symbolic);
    for (const auto flags : {O_WRONLY, O_RDWR}) {
        const FileDescriptor writer(::open(link.c_str(), flags | O_CLOEXEC));
        for (const auto& path : {file, link, symbolic})
            EXPECT_EQ(lookAtFile(path).writers, Writers::some);
    }
    for (const auto& path : {file, link, symbolic}) {
        EXPECT_EQ(lookAtFile(path).writers, Writers::none);
        EXPECT_TRUE(lookAtFile(path).wasLinked);
    }
}

TEST_F(FileLookTest, MindsNoReaders)
{
    const FileDescriptor reader(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_EQ(lookAtFile(file).writers, Writers::none);
}

TEST_F(FileLookTest, SeesNoFileInAFolderPipeOrDanglingLink)
{
    ::mkfifo((temporary.path / "pipe").c_str(), 0600);
    fs::create_symlink("nowhere", temporary.path / "dangling");
    fs::create_symlink("/dev/null", temporary.path / "device");
    for (const char* name : {"absent", "pipe", "dangling", "device", "."})
        EXPECT_FALSE(lookAtFile(temporary.path / name).isFile) << name;
}

TEST_F(FileLookTest, DoesNotKnowTheWritersOfAFileThatItMayNotRead)
{
    fs::permissions(temporary.path, fs::perms(0755));
    fs::permissions(file, fs::perms::none);
    const test::AsOrdinaryUser ordinary;
    const auto seen = lookAtFile(file);
    EXPECT_TRUE(seen.isFile);
    EXPECT_EQ(seen.writers, Writers::unknown);
}

TEST_F(FileLookTest, HarmsNobodyWhoOpensTheFileMeanwhile)
{
    std::atomic<bool> stop = false;
    std::jthread writer([&] {
        while (!stop) {
            const FileDescriptor opened(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
            EXPECT_TRUE(opened);
        }
    });
    int seenWith = 0;
    int seenWithout = 0;
    const auto start = std::chrono::steady_clock::now();
    for (auto passed = 0ns; passed < 200ms || (passed < 10s && (!seenWith || !seenWithout));
         passed = std::chrono::steady_clock::now() - start)
        ++(lookAtFile(file).writers == Writers::some ? seenWith : seenWithout);
    EXPECT_GT(seenWith, 0);
    EXPECT_GT(seenWithout, 0);
    stop = true;
}

} // namespace

} // namespace tallowbay::posix
