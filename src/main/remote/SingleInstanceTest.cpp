#include "main/remote/SingleInstance.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

#include <unistd.h>

namespace tallowbay {
namespace {

using Result = SingleInstance::Result;

class SingleInstanceTest : public testing::Test {
protected:
    test::TemporaryFolder folder;
    const std::filesystem::path lockFile = folder.path / "tallowbay.lock";
};

TEST_F(SingleInstanceTest, HoldsOffASecondInstanceWithoutABus)
{
    SingleInstance first(lockFile);
    SingleInstance second(lockFile);

    EXPECT_EQ(first.acquire(false), Result::first);
    EXPECT_EQ(second.acquire(false), Result::another);
}

TEST_F(SingleInstanceTest, LetsTheNextOneInWhenTheFirstHasEnded)
{
    {
        SingleInstance first(lockFile);
        EXPECT_EQ(first.acquire(false), Result::first);
    }
    SingleInstance next(lockFile);
    EXPECT_EQ(next.acquire(false), Result::first);
}

TEST_F(SingleInstanceTest, HoldsNobodyOffWhereNoLockCanBeHad)
{
    SingleInstance first(folder.path / "missing" / "lock");
    EXPECT_EQ(first.acquire(false), Result::first);
}

TEST_F(SingleInstanceTest, FollowsNoLinkThatSomeonePutInItsPlace)
{
    const auto victim = folder.path / "victim";
    std::ofstream(victim) << "content";
    std::filesystem::create_symlink(victim, lockFile);

    SingleInstance first(lockFile);
    SingleInstance second(lockFile);
    EXPECT_EQ(first.acquire(false), Result::first);
    EXPECT_EQ(second.acquire(false), Result::first);
}

TEST_F(SingleInstanceTest, LocksOneFileForEachDisplay)
{
    setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
    setenv("DISPLAY", ":3", 1);
    EXPECT_EQ(instanceLockFile(), "/run/user/7/tallowbay:3.lock");
    setenv("DISPLAY", "/tmp/socket/x", 1);
    EXPECT_EQ(instanceLockFile(), "/run/user/7/tallowbay_tmp_socket_x.lock");
    unsetenv("XDG_RUNTIME_DIR");
    setenv("DISPLAY", ":3", 1);
    EXPECT_EQ(instanceLockFile(), "/tmp/tallowbay-" + std::to_string(getuid()) + ":3.lock");
}

} // namespace
} // namespace tallowbay
