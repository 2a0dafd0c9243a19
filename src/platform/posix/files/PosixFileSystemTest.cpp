#include "platform/posix/files/PosixFileSystem.h"

#include "platform/contract/FileSystemContract.h"
#include "platform/posix/Environment.h"
#include "platform/posix/files/FileDraft.h"
#include "support/AsOrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <csignal>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <pwd.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

struct PosixFileBackend {
    test::TemporaryFolder temporary;
    PosixFileSystem system;

    FileSystem& files() { return system; }
    fs::path folder() { return temporary.path; }
    WallTime now() { return WallTime::clock::now(); }
    void rename(const fs::path& from, const fs::path& to) { fs::rename(from, to); }
    void awaitNextDate()
    {
        const auto probe = folder() / "probe";
        const auto date = [&] {
            std::ofstream(probe).put('x');
            return system.creationDate(probe);
        };
        for (const auto first = date(); date() == first;)
            fs::remove(probe);
        fs::remove(probe);
    }
};

class PosixFileSystemTest : public testing::Test {
protected:
    test::TemporaryFolder temporary;
    const fs::path folder = temporary.path;
    PosixFileSystem files;

    static void write(const fs::path& path, std::string_view bytes)
    {
        std::ofstream(path) << bytes;
    }
    std::size_t entryCount() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
    }
    static mode_t modeOf(const fs::path& path)
    {
        struct stat status { };
        EXPECT_EQ(::stat(path.c_str(), &status), 0);
        return status.st_mode & 07777;
    }
};

TEST_F(PosixFileSystemTest, SeesNoEntryBehindADanglingLink)
{
    fs::create_symlink("nowhere", folder / "link");
    EXPECT_FALSE(files.exists(folder / "link"));
    EXPECT_TRUE(files.creationDate(folder / "link")) << "the link itself is there";
}

TEST_F(PosixFileSystemTest, FollowsLinksToFilesAndFolders)
{
    write(folder / "file", "abc");
    fs::create_symlink(folder / "file", folder / "toFile");
    fs::create_symlink(folder, folder / "toFolder");
    EXPECT_TRUE(files.exists(folder / "toFile"));
    EXPECT_EQ(files.size(folder / "toFile"), 3u);
    EXPECT_TRUE(files.isDirectory(folder / "toFolder"));
}

TEST_F(PosixFileSystemTest, KeepsTheCreationDateOfAFileThatIsChangedLater)
{
    write(folder / "file", "");
    const auto created = files.creationDate(folder / "file");
    const auto longAgo = fs::file_time_type::clock::now() - 24h * 365;
    fs::last_write_time(folder / "file", longAgo);
    EXPECT_EQ(files.creationDate(folder / "file"), created);
}

TEST_F(PosixFileSystemTest, TakesTheDateThatAFileIsSaidToBeChangedAt)
{
    write(folder / "file", "");
    const timespec restored[] = {{1'700'000'000, 0}, {1'700'000'000, 5'000'000}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder / "file").c_str(), restored, 0), 0);
    EXPECT_EQ(files.modificationDate(folder / "file"), WallTime(1'700'000'000'005ms));
}

TEST_F(PosixFileSystemTest, KnowsAFileAgainWhoseContentAndDateWereChanged)
{
    write(folder / "file", "first");
    const auto identity = files.identity(folder / "file");
    struct statx status { };
    ASSERT_EQ(::statx(AT_FDCWD, folder.c_str(), 0, STATX_BTIME, &status), 0);
    if (!(status.stx_mask & STATX_BTIME))
        GTEST_SKIP() << "The file system does not know when a file was made";
    write(folder / "file", "second");
    fs::last_write_time(folder / "file", fs::file_time_type::clock::now() - 24h);
    EXPECT_EQ(files.identity(folder / "file"), identity);
}

TEST_F(PosixFileSystemTest, KnowsAFileByEachOfItsNamesAndALinkForItself)
{
    write(folder / "file", "");
    fs::create_hard_link(folder / "file", folder / "further name");
    fs::create_symlink("file", folder / "link");
    EXPECT_EQ(files.identity(folder / "further name"), files.identity(folder / "file"));
    EXPECT_NE(files.identity(folder / "link"), files.identity(folder / "file"));
}

TEST_F(PosixFileSystemTest, KnowsTheHomesOfTheMachinesUsers)
{
    const passwd* root = ::getpwuid(0);
    ASSERT_TRUE(root);
    EXPECT_EQ(files.homeFolderOf(root->pw_name), root->pw_dir);
}

TEST_F(PosixFileSystemTest, TakesTheDateOfTheLastChangeWhereThereIsNoBirthTime)
{
    // The process table's files have no time of birth.
    struct statx status { };
    ASSERT_EQ(::statx(AT_FDCWD, "/proc/self/status", 0, STATX_BTIME | STATX_MTIME, &status), 0);
    ASSERT_EQ(status.stx_mask & STATX_BTIME, 0u);
    const auto date = files.creationDate("/proc/self/status");
    ASSERT_TRUE(date);
    EXPECT_EQ(
        std::chrono::floor<std::chrono::seconds>(*date).time_since_epoch().count(),
        status.stx_mtime.tv_sec);
}

TEST_F(PosixFileSystemTest, DatesALinkNotItsTarget)
{
    write(folder / "target", "");
    const auto targetDate = files.creationDate(folder / "target");
    do
        files.remove(folder / "link"), fs::create_symlink("target", folder / "link");
    while (files.creationDate(folder / "link") == targetDate);
    EXPECT_GT(files.creationDate(folder / "link"), targetDate);
}

TEST_F(PosixFileSystemTest, RemovesALinkAndNotItsTarget)
{
    fs::create_directory(folder / "target");
    write(folder / "target" / "file", "");
    fs::create_symlink(folder / "target", folder / "link");
    EXPECT_TRUE(files.remove(folder / "link/")) << "also with a slash at the end";
    EXPECT_FALSE(fs::is_symlink(folder / "link"));
    EXPECT_TRUE(fs::exists(folder / "target" / "file"));
}

TEST_F(PosixFileSystemTest, RemovesAFolderWithoutFollowingTheLinksInIt)
{
    fs::create_directory(folder / "kept");
    write(folder / "kept" / "file", "");
    fs::create_directory(folder / "gone");
    fs::create_symlink(folder / "kept", folder / "gone" / "link");
    EXPECT_TRUE(files.remove(folder / "gone"));
    EXPECT_TRUE(fs::exists(folder / "kept" / "file"));
    EXPECT_FALSE(fs::exists(folder / "gone"));
}

TEST_F(PosixFileSystemTest, RemovesADanglingLink)
{
    fs::create_symlink("nowhere", folder / "link");
    EXPECT_TRUE(files.remove(folder / "link"));
    EXPECT_EQ(entryCount(), 0u);
}

TEST_F(PosixFileSystemTest, RemovesNothingByARelativeOrRootPath)
{
    EXPECT_FALSE(files.remove(""));
    EXPECT_FALSE(files.remove("relative"));
    EXPECT_FALSE(files.remove("/"));
    EXPECT_FALSE(files.remove("//"));
}

TEST_F(PosixFileSystemTest, TellsThatAPartCouldNotBeRemoved)
{
    fs::create_directory(folder / "locked");
    write(folder / "locked" / "file", "");
    fs::permissions(folder / "locked", fs::perms(0555));
    fs::permissions(folder, fs::perms(0777));
    const test::AsOrdinaryUser ordinary;
    EXPECT_FALSE(files.remove(folder / "locked"));
    EXPECT_TRUE(files.exists(folder / "locked" / "file"));
}

TEST_F(PosixFileSystemTest, SeesNothingInAFolderThatMayNotBeSearched)
{
    fs::create_directory(folder / "closed");
    write(folder / "closed" / "file", "");
    fs::permissions(folder / "closed", fs::perms::none);
    fs::permissions(folder, fs::perms(0777));
    const test::AsOrdinaryUser ordinary;
    EXPECT_FALSE(files.exists(folder / "closed" / "file"));
    EXPECT_FALSE(files.creationDate(folder / "closed" / "file"));
    EXPECT_FALSE(files.list(folder / "closed"));
}

TEST_F(PosixFileSystemTest, TellsNoSizeOfAFileThatMayNotBeRead)
{
    write(folder / "file", "abc");
    fs::permissions(folder / "file", fs::perms::none);
    fs::permissions(folder, fs::perms(0777));
    const test::AsOrdinaryUser ordinary;
    EXPECT_FALSE(files.size(folder / "file"));
    EXPECT_FALSE(files.read(folder / "file"));
    EXPECT_TRUE(files.exists(folder / "file"));
}

TEST_F(PosixFileSystemTest, WritesNothingIntoAReadOnlyFolder)
{
    write(folder / "file", "old");
    fs::permissions(folder, fs::perms(0555));
    const test::AsOrdinaryUser ordinary;
    EXPECT_FALSE(files.writeAtomically(folder / "file", "new"));
    EXPECT_FALSE(files.createFolders(folder / "sub"));
    EXPECT_FALSE(files.remove(folder / "file"));
    EXPECT_EQ(files.read(folder / "file"), "old");
}

TEST_F(PosixFileSystemTest, KeepsThePermissionsOfAFileThatItReplaces)
{
    write(folder / "file", "old");
    fs::permissions(folder / "file", fs::perms(0640));
    EXPECT_TRUE(files.writeAtomically(folder / "file", "new"));
    EXPECT_EQ(modeOf(folder / "file"), 0640u);
}

TEST_F(PosixFileSystemTest, GivesANewFileThePermissionsThatTheUmaskLeaves)
{
    const auto before = ::umask(027);
    EXPECT_TRUE(files.writeAtomically(folder / "file", "new"));
    ::umask(before);
    EXPECT_EQ(modeOf(folder / "file"), 0640u);
}

TEST_F(PosixFileSystemTest, WritesThroughALink)
{
    fs::create_directory(folder / "elsewhere");
    write(folder / "elsewhere" / "file", "old");
    fs::create_symlink("elsewhere/file", folder / "link");
    EXPECT_TRUE(files.writeAtomically(folder / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(files.read(folder / "elsewhere" / "file"), "new");
}

TEST_F(PosixFileSystemTest, KeepsTheOldFileWhenTheDiskIsFull)
{
    write(folder / "file", "old");
    // No file may grow beyond this: a write then fails as it does on a full disk.
    const rlimit full{4096, RLIM_INFINITY};
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_FALSE(files.writeAtomically(folder / "file", std::string(10'000, 'x')));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, SIG_DFL);
    EXPECT_EQ(files.read(folder / "file"), "old");
    EXPECT_EQ(entryCount(), 1u) << "the unfinished file was left behind";
}

TEST_F(PosixFileSystemTest, KeepsTheOldFileOnASmallFileSystemThatIsFull)
{
    if (::mount("none", folder.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "may not mount here";
    write(folder / "file", "old");
    EXPECT_FALSE(files.writeAtomically(folder / "file", std::string(200'000, 'x')));
    EXPECT_EQ(files.read(folder / "file"), "old");
    EXPECT_EQ(entryCount(), 1u);
    EXPECT_TRUE(files.writeAtomically(folder / "file", "fits"));
    ::umount2(folder.c_str(), MNT_DETACH);
}

TEST_F(PosixFileSystemTest, RemovesWhatAKilledProgramHasLeftAndNothingElse)
{
    const fs::path left = folder / ".tallowbay-0123456789abcdef";
    const fs::path pipe = folder / ".tallowbay-00000000000000ff";
    write(left, "half of");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const char* name :
         {"tallowbay-0123456789abcdef", ".tallowbay-0123456789abcdeg", ".tallowbay-0123",
          ".tallowbay-0123456789abcdef0"})
        write(folder / name, "not ours");
    FileDraft underWay(folder);
    ASSERT_TRUE(underWay.write("new"));
    EXPECT_TRUE(files.writeAtomically(folder / "other", "bytes"));
    EXPECT_FALSE(fs::exists(left));
    EXPECT_EQ(entryCount(), 7u);
    EXPECT_TRUE(underWay.putInPlaceOf(folder / "file"));
    EXPECT_EQ(files.read(folder / "file"), "new");
}

TEST_F(PosixFileSystemTest, DoesNotWaitForTheWriterOfAPipe)
{
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(files.read(folder / "pipe"));
    EXPECT_FALSE(files.size(folder / "pipe"));
}

TEST_F(PosixFileSystemTest, AReaderSeesTheOldOrTheNewBytesAtAnyMoment)
{
    const auto path = folder / "file";
    const std::string one(100'000, '1');
    const std::string two(50'000, '2');
    ASSERT_TRUE(files.writeAtomically(path, one));
    std::jthread writer([&](std::stop_token stop) {
        for (int i = 0; !stop.stop_requested(); ++i)
            EXPECT_TRUE(files.writeAtomically(path, i % 2 ? one : two));
    });
    for (int i = 0; i < 200; ++i) {
        const auto seen = files.read(path);
        ASSERT_TRUE(seen == one || seen == two);
    }
}

class EnvironmentTest : public testing::Test {
protected:
    void set(const char* name, const char* value)
    {
        const char* before = std::getenv(name);
        undo.emplace_back(name, before ? std::optional<std::string>(before) : std::nullopt);
        value ? ::setenv(name, value, 1) : ::unsetenv(name);
    }
    ~EnvironmentTest() override
    {
        for (auto [name, value] : undo)
            value ? ::setenv(name, value->c_str(), 1) : ::unsetenv(name);
    }

private:
    std::vector<std::pair<const char*, std::optional<std::string>>> undo;
};

TEST_F(EnvironmentTest, NamesTheHomeOfTheEnvironment)
{
    set("HOME", "/home/someone");
    EXPECT_EQ(PosixFileSystem().homeFolder(), "/home/someone");
}

TEST_F(EnvironmentTest, NamesTheHomeOfTheUserDatabaseWhereThereIsNoOther)
{
    for (const char* home : {static_cast<const char*>(nullptr), "", "relative"}) {
        set("HOME", home);
        EXPECT_TRUE(PosixFileSystem().homeFolder().is_absolute());
        EXPECT_NE(PosixFileSystem().homeFolder(), "/");
    }
}

TEST_F(EnvironmentTest, KnowsAWaylandSessionByItsDisplayOrItsType)
{
    set("TALLOWBAY_DESKTOP", nullptr);
    set("WAYLAND_DISPLAY", nullptr);
    set("XDG_SESSION_TYPE", "x11");
    EXPECT_FALSE(environmentIsWayland());
    set("XDG_SESSION_TYPE", "wayland");
    EXPECT_TRUE(environmentIsWayland());
    set("XDG_SESSION_TYPE", nullptr);
    EXPECT_FALSE(environmentIsWayland());
    set("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_TRUE(environmentIsWayland());
}

TEST_F(EnvironmentTest, LetsTheUserDecideForX11)
{
    set("WAYLAND_DISPLAY", "wayland-0");
    set("XDG_SESSION_TYPE", "wayland");
    set("TALLOWBAY_DESKTOP", "x11");
    EXPECT_FALSE(environmentIsWayland());
    set("TALLOWBAY_DESKTOP", "");
    EXPECT_TRUE(environmentIsWayland());
}

// Where temporary folders are made: a runtime folder of the user's, and a folder that all share.
class TemporaryPlacesTest : public EnvironmentTest {
protected:
    TemporaryPlacesTest()
    {
        set("XDG_RUNTIME_DIR", runtime.path.c_str());
        set("TMPDIR", shared.path.c_str());
        fs::permissions(shared.path, fs::perms(01777));
    }
    ~TemporaryPlacesTest() override
    {
        for (const fs::path& folder : made)
            fs::remove_all(folder);
    }

    fs::path placeOfNewFolder()
    {
        const auto folder = PosixFileSystem().makeTemporaryFolder();
        made.push_back(folder.value_or("/nowhere/tallowbay"));
        return made.back().parent_path();
    }

    test::TemporaryFolder runtime;
    test::TemporaryFolder shared;
    std::vector<fs::path> made;
};

TEST_F(TemporaryPlacesTest, TakesTheRuntimeFolderOfTheUserFirst)
{
    EXPECT_EQ(placeOfNewFolder(), runtime.path);
}

TEST_F(TemporaryPlacesTest, LetsNoOtherUserLookIntoTheFolder)
{
    const auto before = ::umask(0);
    placeOfNewFolder();
    set("XDG_RUNTIME_DIR", nullptr);
    placeOfNewFolder();
    ::umask(before);
    for (const fs::path& folder : made)
        EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all) << folder;
}

TEST_F(TemporaryPlacesTest, TakesTheSharedFolderWithoutARuntimeFolder)
{
    for (const char* none : {static_cast<const char*>(nullptr), "", "relative", "/nowhere"}) {
        set("XDG_RUNTIME_DIR", none);
        EXPECT_EQ(placeOfNewFolder(), shared.path);
    }
}

TEST_F(TemporaryPlacesTest, TakesNoRuntimeFolderThatOthersMayEnter)
{
    for (const unsigned mode : {0701u, 0710u, 0740u, 0755u, 0777u}) {
        fs::permissions(runtime.path, fs::perms(mode));
        EXPECT_EQ(placeOfNewFolder(), shared.path) << std::oct << mode;
    }
}

TEST_F(TemporaryPlacesTest, TakesNoRuntimeFolderOfAnotherUser)
{
    if (::chown(runtime.path.c_str(), 65534, 65534) != 0)
        GTEST_SKIP() << "only the superuser can give a folder away";
    EXPECT_EQ(placeOfNewFolder(), shared.path);
}

TEST_F(TemporaryPlacesTest, TakesNoFolderInWhichOthersCanReplaceOurEntries)
{
    set("XDG_RUNTIME_DIR", nullptr);
    for (const unsigned mode : {0777u, 0770u, 0722u}) {
        fs::permissions(shared.path, fs::perms(mode));
        EXPECT_EQ(placeOfNewFolder(), "/tmp") << std::oct << mode;
    }
    fs::permissions(shared.path, fs::perms(0755));
    EXPECT_EQ(placeOfNewFolder(), shared.path) << "others may look at the name";
}

TEST_F(TemporaryPlacesTest, TakesNoSharedFolderOfAnotherUser)
{
    set("XDG_RUNTIME_DIR", nullptr);
    if (::chown(shared.path.c_str(), 65534, 65534) != 0)
        GTEST_SKIP() << "only the superuser can give a folder away";
    EXPECT_EQ(placeOfNewFolder(), "/tmp");
}

TEST_F(TemporaryPlacesTest, TakesTheNextPlaceWhereNoFolderCanBeMade)
{
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(runtime.path.c_str(), 65534, 65534), 0);
    }
    fs::permissions(runtime.path, fs::perms(0500));
    const test::AsOrdinaryUser ordinary;
    EXPECT_EQ(placeOfNewFolder(), shared.path);
}

} // namespace

} // namespace tallowbay::posix

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Posix, FileSystemContract, posix::PosixFileBackend);
}
