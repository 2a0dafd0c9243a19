// Makes pictures of screen text, each NAME.png beside a NAME.txt that says what it reads:
//   ocr-generate CORPUS FOLDER COUNT SEED [WIDTHxHEIGHT]
// A name begins with its category: code-003.png. With a size, every picture is of that size and is
// filled with prose, as far as it goes.

#include "Painter.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

namespace tallowbay::bench {

namespace {

void save(
    Sample& sample, const std::filesystem::path& folder, int number,
    std::optional<PictureSize> size)
{
    char digits[16];
    std::snprintf(digits, sizeof digits, "-%03d", number);
    const auto name = folder / (sample.category + digits);
    paint(sample, name.string() + ".png", size);
    std::ofstream(name.string() + ".txt") << textOf(sample);
}

// Enough prose to fill any region.
Sample makeFullSample(const Corpus& corpus, int number, Random& random)
{
    Sample sample = makeSample(corpus, number, random);
    while (sample.rows.size() < 60) {
        const Sample more = makeSample(corpus, number, random);
        sample.rows.insert(sample.rows.end(), more.rows.begin(), more.rows.end());
    }
    sample.category = "region";
    return sample;
}

void generate(int count, char** arguments)
{
    const Corpus corpus = loadCorpus(arguments[1]);
    const std::filesystem::path folder = arguments[2];
    std::filesystem::create_directories(folder);
    PictureSize size{};
    const bool sized =
        count > 5 && std::sscanf(arguments[5], "%dx%d", &size.width, &size.height) == 2;
    const int kinds = static_cast<int>(categories().size()); // the first of them is prose
    Random random(std::strtoull(arguments[4], nullptr, 10));
    for (int number = 0; number < std::atoi(arguments[3]); ++number) {
        Sample sample = sized ? makeFullSample(corpus, number * kinds, random)
                              : makeSample(corpus, number, random);
        save(sample, folder, number, sized ? std::optional(size) : std::nullopt);
    }
}

} // namespace

} // namespace tallowbay::bench

int main(int count, char** arguments)
{
    if (count < 5) {
        std::fprintf(stderr, "usage: %s CORPUS FOLDER COUNT SEED [WIDTHxHEIGHT]\n", arguments[0]);
        return 2;
    }
    try {
        tallowbay::bench::generate(count, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
