#include "platform/posix/preferences/FolderLooks.h"

#include "platform/Clock.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

MonotonicTime now()
{
    return std::chrono::steady_clock::now();
}

class FolderLooksTest : public testing::Test {
protected:
    // What asks while this is held waits, as on a network that is gone.
    std::unique_lock<std::mutex> stopAnswering() { return std::unique_lock(*network); }
    FolderLooks::Look lookOverNetwork()
    {
        return [network = network](const fs::path& path) {
            const std::scoped_lock passing(*network);
            return FolderLooks::atPath(path);
        };
    }
    bool becomesThere(const fs::path& path)
    {
        for (const auto limit = now() + 30s; now() < limit; std::this_thread::yield()) {
            overNetwork.refresh();
            if (overNetwork.isThere(path))
                return true;
        }
        return false;
    }

    test::TemporaryFolder temporary;
    const fs::path folder = temporary.path / "folder";
    const std::shared_ptr<std::mutex> network = std::make_shared<std::mutex>();
    FolderLooks looks{FolderLooks::atPath, 30s};
    FolderLooks overNetwork{lookOverNetwork(), 20ms};
};

TEST_F(FolderLooksTest, SeeAFolderThatIsThereAndNothingElse)
{
    fs::create_directory(folder);
    fs::create_directory_symlink(folder, temporary.path / "link");
    fs::create_symlink("nowhere", temporary.path / "dangling");
    EXPECT_TRUE(looks.isThere(folder));
    EXPECT_TRUE(looks.isThere(temporary.path / "link"));
    EXPECT_FALSE(looks.isThere(temporary.path / "dangling"));
    EXPECT_FALSE(looks.isThere("/dev/null"));
    EXPECT_FALSE(looks.isThere(temporary.path / "none"));
}

TEST_F(FolderLooksTest, KnowAFolderByAnyOfItsPaths)
{
    fs::create_directory(folder);
    fs::create_directory_symlink(folder, temporary.path / "link");
    EXPECT_TRUE(looks.areOne(folder, temporary.path / "link"));
    EXPECT_FALSE(looks.areOne(folder, temporary.path));
    EXPECT_FALSE(looks.areOne("/none", "/neither")) << "nothing is known of what is not there";
    EXPECT_TRUE(looks.areOne("/none", "/none"));
}

TEST_F(FolderLooksTest, SeeWhatHasChangedWithEachRefresh)
{
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(looks.isThere(folder));
        fs::create_directory(folder);
        EXPECT_FALSE(looks.isThere(folder)) << "one picture until the next";
        looks.refresh();
        EXPECT_TRUE(looks.isThere(folder));
        fs::remove(folder);
        looks.refresh();
    }
}

TEST_F(FolderLooksTest, ForgetWhatNobodyAsksFor)
{
    EXPECT_FALSE(looks.isThere(folder));
    for (int i = 0; i < 20; ++i)
        looks.refresh();
    fs::create_directory(folder);
    EXPECT_TRUE(looks.isThere(folder)) << "looked at as if for the first time";
}

// It was looked for once with each question: sixteen times a second for nothing.
TEST_F(FolderLooksTest, KeepWhatOnlyOneOfTwoCallersAsksFor)
{
    fs::create_directory(folder);
    for (int i = 0; i < 20; ++i) {
        looks.refresh();
        EXPECT_FALSE(looks.isThere(temporary.path / "none"));
        looks.refresh();
        EXPECT_EQ(looks.isThere(folder), i == 0);
        fs::remove(folder);
        looks.refresh();
        fs::create_directory(folder); // after the look
        EXPECT_FALSE(looks.isThere(folder)) << "one picture until the next";
        fs::remove(folder);
    }
}

// The whole program stood still twice a second, for as long as the network did not answer.
TEST_F(FolderLooksTest, KeepToWhatWasSeenWhileAFolderDoesNotAnswer)
{
    fs::create_directory(folder);
    EXPECT_TRUE(becomesThere(folder));
    {
        const auto silence = stopAnswering();
        const auto begin = now();
        for (int i = 0; i < 500; ++i) {
            overNetwork.refresh();
            EXPECT_TRUE(overNetwork.isThere(folder));
            EXPECT_FALSE(overNetwork.isThere(temporary.path));
        }
        EXPECT_LT(now() - begin, 5s) << "only the first is waited for";
    }
    EXPECT_TRUE(becomesThere(temporary.path));
}

TEST_F(FolderLooksTest, MayGoWhileAFolderDoesNotAnswer)
{
    const auto silence = stopAnswering();
    FolderLooks shortLived(lookOverNetwork(), 1ms);
    EXPECT_FALSE(shortLived.isThere(folder));
}

} // namespace

} // namespace tallowbay::posix
