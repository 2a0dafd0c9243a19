// Runs a fuzz target where there is no libFuzzer: changes its seeds at random, always in the same
// order, for a number of seconds and of inputs at most.
//
//   TARGET [SECONDS [INPUTS [SEED]]]    or    TARGET FILE...    to run these inputs once

#include "fuzz/FuzzTarget.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>

namespace {

using Bytes = std::string;

class Mutator {
public:
    explicit Mutator(unsigned seed)
        : random(seed)
        , pool(tallowbay::fuzz::seeds())
    {
    }

    Bytes next()
    {
        Bytes input = pool[below(pool.size())];
        for (std::size_t changes = 1 + below(6); changes > 0; --changes)
            change(input);
        return input;
    }

private:
    std::size_t below(std::size_t bound) { return bound ? random() % bound : 0; }
    char byte()
    {
        constexpr unsigned char telling[] = {0, 1, 0x7F, 0x80, 0xFF, 0xFE, 0x10, 0x40};
        return static_cast<char>(below(2) ? telling[below(sizeof telling)] : below(256));
    }

    void change(Bytes& input)
    {
        const std::size_t place = below(input.size());
        const std::size_t length = std::min(1 + below(32), input.size() - place);
        switch (below(7)) {
        case 0:
            input.resize(place);
            break;
        case 1:
            input.erase(place, length);
            break;
        case 2:
            input.insert(place, input.substr(below(input.size()), length));
            break;
        case 3: {
            const Bytes& other = pool[below(pool.size())];
            input = input.substr(0, place) + other.substr(below(other.size()));
            break;
        }
        case 4:
            if (!input.empty())
                input[place] = static_cast<char>(input[place] ^ (1 << below(8)));
            break;
        case 5:
            for (std::size_t i = 0; i < length; ++i)
                input[place + i] = byte();
            break;
        default:
            if (!input.empty())
                input[place] = byte();
        }
    }

    std::mt19937 random;
    std::vector<Bytes> pool;
};

void run(const Bytes& input)
{
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

int runFiles(int count, char** paths)
{
    for (int i = 0; i < count; ++i) {
        std::ifstream file(paths[i], std::ios::binary);
        run(Bytes(std::istreambuf_iterator<char>(file), {}));
    }
    return 0;
}

// Where a finding can be picked up again.
void keep(const Bytes& input)
{
    if (const char* path = std::getenv("FUZZ_LAST_INPUT"))
        std::ofstream(path, std::ios::binary) << input;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount > 1 && !std::strtod(arguments[1], nullptr))
        return runFiles(argumentCount - 1, arguments + 1);
    const auto number = [&](int index, long otherwise) {
        return argumentCount > index ? std::strtol(arguments[index], nullptr, 10) : otherwise;
    };
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(number(1, 5));
    const long most = number(2, 1'000'000'000);
    for (const Bytes& seed : tallowbay::fuzz::seeds())
        run(seed);
    Mutator mutator(static_cast<unsigned>(number(3, 1)));
    long count = 0;
    for (; count < most && std::chrono::steady_clock::now() < end; ++count) {
        const Bytes input = mutator.next();
        keep(input);
        run(input);
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%ld inputs, at most %ld MB\n", count, usage.ru_maxrss / 1024);
    return count > 0 ? 0 : 1;
}
