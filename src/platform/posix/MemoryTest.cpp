#include "platform/posix/Memory.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <vector>

#include <unistd.h>

namespace tallowbay::posix {
namespace {

constexpr std::size_t pictureBytes = std::size_t{3840} * 2160 * 4;

std::size_t residentBytes()
{
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

TEST(MemoryTest, APictureGoesBackThoughSomethingIsMadeAfterIt)
{
    giveLargeBlocksBack();
    const std::size_t before = residentBytes();
    std::vector<std::unique_ptr<char[]>> later;
    for (int picture = 0; picture < 4; ++picture) {
        auto pixels = std::make_unique<std::vector<char>>(pictureBytes, 'x');
        later.push_back(std::make_unique<char[]>(100'000)); // above it, where it comes from a heap
        pixels.reset();
    }
    EXPECT_LT(residentBytes(), before + pictureBytes / 2);
}

} // namespace
} // namespace tallowbay::posix
