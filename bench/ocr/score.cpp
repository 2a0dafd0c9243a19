// How well and how fast text is read, beside the plain tesseract command on the same pictures:
//   ocr_score [--cold] [--show] FOLDER...
// A folder holds any number of pairs NAME.png and NAME.txt. What stands before the last hyphen of a
// name is its category. Text is compared as EditDistance.h says. --cold loads the engine anew for
// every picture, as the command does; --show prints every line that was read wrong.

#include "EditDistance.h"
#include "platform/headless/VirtualTime.h"
#include "platform/posix/PosixProcesses.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "platform/qt/graphics/QtImageCodec.h"
#include "platform/tesseract/TesseractRecognizer.h"
#include "support/TemporaryFolder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tallowbay::bench {

namespace {

namespace fs = std::filesystem;
using posix::PosixFileSystem;

struct Options {
    bool cold = false;
    bool show = false;
    std::vector<fs::path> folders;
};

struct Reading {
    std::string text;
    double seconds = 0;
};

template <typename Read> Reading timed(Read read)
{
    const auto begin = std::chrono::steady_clock::now();
    std::string text = read();
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    return {std::move(text), passed.count()};
}

// From the file to its text, as the program does it.
class OurEngine {
public:
    explicit OurEngine(bool cold)
        : cold(cold)
    {
    }

    Reading read(const fs::path& picture)
    {
        return timed([&] {
            if (cold || !recognizer)
                recognizer = std::make_unique<tesseract::TesseractRecognizer>(dispatch);
            auto loaded = loadImage(files, codec, picture);
            std::string text;
            recognizer->recognize(
                std::make_shared<Bitmap>(std::get<Bitmap>(std::move(loaded))), {},
                RecognitionReply([&text](const RecognitionResult& result) {
                    for (const auto& observation : std::get<TextObservations>(result))
                        text += observation.candidates.at(0).string + '\n';
                }));
            return text;
        });
    }

private:
    const bool cold;
    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    PosixFileSystem files;
    qt::QtImageCodec codec;
    std::unique_ptr<tesseract::TesseractRecognizer> recognizer;
};

class PlainCommand {
public:
    Reading read(const fs::path& picture)
    {
        const fs::path output = folder.path / "read";
        return timed([&] {
            processes.run("/usr/bin/tesseract", {picture, output});
            return files.read(output.string() + ".txt").value_or("");
        });
    }

private:
    test::TemporaryFolder folder;
    posix::PosixProcesses processes;
    PosixFileSystem files;
};

struct Score {
    int samples = 0;
    std::size_t characters = 0;
    int ours = 0;
    int plain = 0;
};

double percent(int wrong, std::size_t characters)
{
    return characters == 0 ? 0 : 100.0 * wrong / static_cast<double>(characters);
}

class Scorer {
public:
    explicit Scorer(const Options& options)
        : options(options)
        , engine(options.cold)
    {
    }

    void add(const fs::path& picture, const std::string& truth)
    {
        // Whoever is first warms the disk cache for the other.
        const bool oursFirst = ratios.size() % 2 == 0;
        Reading ours = oursFirst ? engine.read(picture) : Reading();
        const Reading plain = command.read(picture);
        if (!oursFirst)
            ours = engine.read(picture);
        ratios.push_back(ours.seconds / plain.seconds);
        ourSeconds += ours.seconds;
        plainSeconds += plain.seconds;
        const std::string name = picture.stem();
        const Score one{
            1, normalised(truth).size(), editDistance(normalised(truth), normalised(ours.text)),
            editDistance(normalised(truth), normalised(plain.text))};
        count(scores[name.substr(0, name.rfind('-'))], one);
        count(all, one);
        if (options.show && one.ours > 0)
            std::printf(
                "--- %s: %d wrong\n%s+++ read\n%s", name.c_str(), one.ours, truth.c_str(),
                ours.text.c_str());
    }

    void print()
    {
        std::printf(
            "%-14s %8s %10s %14s %14s\n", "category", "samples", "characters", "ours wrong/100",
            "plain wrong/100");
        for (const auto& [category, score] : scores)
            printRow(category, score);
        printRow("all", all);
        std::sort(ratios.begin(), ratios.end());
        std::printf(
            "time a picture: ours %.3f s, plain %.3f s; ratio of pairs: median %.2f, 90th "
            "percentile "
            "%.2f\n",
            ourSeconds / all.samples, plainSeconds / all.samples, ratios[ratios.size() / 2],
            ratios[ratios.size() * 9 / 10]);
    }

    bool empty() const { return all.samples == 0; }

private:
    static void count(Score& sum, const Score& one)
    {
        sum.samples += one.samples;
        sum.characters += one.characters;
        sum.ours += one.ours;
        sum.plain += one.plain;
    }

    static void printRow(const std::string& category, const Score& score)
    {
        std::printf(
            "%-14s %8d %10zu %14.3f %14.3f\n", category.c_str(), score.samples, score.characters,
            percent(score.ours, score.characters), percent(score.plain, score.characters));
    }

    const Options& options;
    OurEngine engine;
    PlainCommand command;
    std::map<std::string, Score> scores;
    Score all;
    std::vector<double> ratios;
    double ourSeconds = 0;
    double plainSeconds = 0;
};

int score(const Options& options)
{
    const PosixFileSystem files;
    Scorer scorer(options);
    for (const fs::path& folder : options.folders) {
        auto entries = files.list(folder).value_or(std::vector<fs::path>());
        std::sort(entries.begin(), entries.end());
        for (const fs::path& picture : entries) {
            auto truth = picture;
            const auto text = files.read(truth.replace_extension(".txt"));
            if (picture.extension() == ".png" && text)
                scorer.add(picture, *text);
        }
    }
    if (scorer.empty()) {
        std::fprintf(stderr, "there is no pair of NAME.png and NAME.txt\n");
        return 1;
    }
    scorer.print();
    return 0;
}

} // namespace

} // namespace tallowbay::bench

int main(int count, char** arguments)
{
    tallowbay::bench::Options options;
    for (const std::string& argument : std::vector<std::string>(arguments + 1, arguments + count)) {
        if (argument == "--cold")
            options.cold = true;
        else if (argument == "--show")
            options.show = true;
        else
            options.folders.emplace_back(argument);
    }
    return tallowbay::bench::score(options);
}
