#include "platform/posix/files/PrivateFile.h"

#include "platform/posix/files/FileBytes.h"
#include "support/AsOrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace tallowbay::posix {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Optional;

class PrivateFileTest : public testing::Test {
protected:
    PrivateFileTest() { std::ofstream(precious) << "precious"; }

    void expectUntouched()
    {
        EXPECT_EQ(readFile(precious), "precious");
        for (const auto& entry : fs::directory_iterator(temporary.path))
            EXPECT_TRUE(entry.path() == precious || entry.path() == path) << entry.path();
    }

    test::TemporaryFolder temporary;
    const fs::path precious = temporary.path / "precious";
    const fs::path path = temporary.path / "capture.png";
};

TEST_F(PrivateFileTest, WritesANewFile)
{
    EXPECT_EQ(obstacleAt(path), std::nullopt);
    EXPECT_EQ(writePrivateFile(path, std::string_view("a\0b", 3)), std::nullopt);
    EXPECT_EQ(readFile(path), std::string("a\0b", 3));
    expectUntouched();
}

TEST_F(PrivateFileTest, LetsNoOtherUserReadItWhateverWasThere)
{
    std::ofstream(path) << "old";
    fs::permissions(path, fs::perms(0666));
    const auto before = ::umask(0);
    EXPECT_EQ(writePrivateFile(path, "new"), std::nullopt);
    ::umask(before);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
    EXPECT_EQ(readFile(path), "new");
}

TEST_F(PrivateFileTest, LeavesTheOtherNamesOfAFileThatItReplaces)
{
    fs::create_hard_link(precious, path);
    EXPECT_EQ(writePrivateFile(path, "new"), std::nullopt);
    EXPECT_EQ(readFile(path), "new");
    expectUntouched();
}

// What another user planted at a guessable name was followed, and the user's file overwritten.
TEST_F(PrivateFileTest, FollowsNoLinkToAFile)
{
    fs::create_symlink(precious, path);
    EXPECT_THAT(obstacleAt(path), Optional(HasSubstr("symbolic link")));
    EXPECT_THAT(writePrivateFile(path, "new"), Optional(HasSubstr("symbolic link")));
    EXPECT_TRUE(fs::is_symlink(path));
    expectUntouched();
}

TEST_F(PrivateFileTest, CreatesNothingBehindADanglingLink)
{
    fs::create_symlink(temporary.path / "made", path);
    EXPECT_THAT(writePrivateFile(path, "new"), Optional(HasSubstr("symbolic link")));
    EXPECT_FALSE(fs::exists(temporary.path / "made"));
    expectUntouched();
}

TEST_F(PrivateFileTest, OpensNoPipeDeviceOrFolder)
{
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_THAT(writePrivateFile(path, "new"), Optional(HasSubstr("no regular file")));
    EXPECT_TRUE(fs::is_fifo(path));
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_THAT(writePrivateFile(path, "new"), Optional(HasSubstr("no regular file")));
    // Not the machine's own device, which a mistake of ours would replace.
    fs::remove(path);
    ASSERT_EQ(::mknod(path.c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_THAT(obstacleAt(path), Optional(HasSubstr("no regular file")));
    expectUntouched();
}

TEST_F(PrivateFileTest, NeverWritesBehindALinkThatIsSwappedInMeanwhile)
{
    const fs::path link = temporary.path / "link";
    std::atomic<int> swaps = 0;
    std::jthread swapping([&](std::stop_token stop) {
        for (; !stop.stop_requested(); ++swaps) {
            std::error_code ignored;
            fs::create_symlink(precious, link, ignored);
            fs::rename(link, path, ignored);
            fs::remove(path, ignored);
        }
    });
    // Counted by the swaps: a writer that is quick is not done before they begin.
    while (swaps < 20000) {
        writePrivateFile(path, "new");
        ASSERT_EQ(readFile(precious), "precious");
    }
}

TEST_F(PrivateFileTest, SaysWhyItCannotWrite)
{
    EXPECT_EQ(
        writePrivateFile(temporary.path / "absent/capture.png", "new"),
        "No such file or directory");
    fs::permissions(temporary.path, fs::perms(0555));
    const test::AsOrdinaryUser ordinary;
    EXPECT_EQ(writePrivateFile(path, "new"), "Permission denied");
}

TEST_F(PrivateFileTest, TakesARelativePath)
{
    const fs::path before = fs::current_path();
    fs::current_path(temporary.path);
    EXPECT_EQ(writePrivateFile("capture.png", "new"), std::nullopt);
    fs::current_path(before);
    EXPECT_EQ(readFile(path), "new");
}

} // namespace
} // namespace tallowbay::posix
