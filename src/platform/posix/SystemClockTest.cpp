#include "platform/posix/SystemClock.h"

#include "platform/contract/ClockContract.h"
#include "support/TemporaryFolder.h"

#include <fstream>

namespace tallowbay::posix {

namespace {

struct SystemClockBackend {
    SystemClock system;
    test::TemporaryFolder folder;

    const Clock& clock() { return system; }
    void pass(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }
    WallTime dateOfNewFile()
    {
        const auto path = folder.path / "new";
        std::ofstream(path) << "data";
        const auto date = std::filesystem::last_write_time(path);
        return std::chrono::time_point_cast<WallTime::duration>(
            std::chrono::file_clock::to_sys(date));
    }
};

// Nobody can set the machine's clock for a test; one that is never set is known by its reading.
TEST(SystemClockTest, TellsAMonotonicTimeThatNobodyCanSet)
{
    const auto before = std::chrono::steady_clock::now();
    const auto told = SystemClock().monotonicNow();
    EXPECT_GE(told, before);
    EXPECT_LE(told, std::chrono::steady_clock::now());
}

} // namespace

} // namespace tallowbay::posix

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(System, ClockContract, posix::SystemClockBackend);
} // namespace tallowbay::contract
