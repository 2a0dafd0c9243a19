// Whatever the user does, in whatever order: the canvas keeps its invariants.

#include "base/Fatal.h"
#include "editor/CanvasSession.h"
#include "fuzz/FuzzTarget.h"

#include <random>

namespace tallowbay::fuzz {

std::vector<std::string> seeds()
{
    std::vector<std::string> result;
    std::mt19937 random(7);
    for (std::size_t length : {20u, 200u, 1000u, 3000u}) {
        std::string bytes(length, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        result.push_back(bytes);
    }
    return result;
}

} // namespace tallowbay::fuzz

// The bytes make the choices; when they are used up the sequence ends.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::size_t used = 0;
    const auto choose = [&](std::uint32_t bound) {
        const auto byte = [&] { return used < size ? data[used++] : 0u; };
        const std::uint32_t low = byte();
        return (bound > 256 ? low | byte() << 8 : low) % bound;
    };
    tallowbay::test::CanvasSession session;
    while (used < size) {
        session.step(choose);
        const std::string violation = session.violation(choose);
        if (!violation.empty())
            tallowbay::fatalError(violation.c_str());
    }
    return 0;
}
