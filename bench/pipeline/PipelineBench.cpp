// What the program costs beside the compressing tool itself: per screenshot, in a burst, and when
// nothing happens. Each figure stands beside its baseline from the same run, since machines differ
// and their speed drifts.
//
// Where others use the machine, the ratio of processor time is the one to go by.
//
//   pipeline_bench [--shots N] [--burst N] [--rounds N] [--idle SECONDS]

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/XServer.h"
#include "support/DesktopPicture.h"
#include "support/Measures.h"

#include <chrono>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <QGuiApplication>

#include <unistd.h>

using namespace tallowbay::test;
using namespace tallowbay::bench;
namespace fs = std::filesystem;

namespace {

struct Options {
    int shots = 100;
    int burst = 100;
    int rounds = 3;
    int idleSeconds = 60;
};

std::string updated(std::size_t count)
{
    return "Clipboard updated: " + std::to_string(count) + " image(s)";
}

// From the moment the file is complete to the moment its batch is on the clipboard.
double oneScreenshot(
    const Tallowbay& tallowbay, const fs::path& path, const std::string& bytes, std::size_t inBatch)
{
    writeFile(path, bytes);
    const auto complete = Steady::now();
    if (!tallowbay.waitForLine(updated(inBatch)))
        throw std::runtime_error("the screenshot did not arrive:\n" + tallowbay.process.output());
    return millisecondsSince(complete);
}

void measureOverhead(const XServer& server, const QSize& size, int shots)
{
    Home home;
    const Tallowbay tallowbay(server, home);
    std::vector<double> bare, overhead;
    for (int shot = 0; shot < shots; ++shot) {
        const std::string bytes = screenshotOf(size, shot);
        const auto input = home.folder() / "input.png";
        writeFile(input, bytes);
        const double before = barePngquant(input, home.folder() / "bare.png");
        const double whole = oneScreenshot(
            tallowbay, home.screenshots() / ("Screenshot " + std::to_string(shot) + ".png"), bytes,
            std::size_t(shot) + 1);
        const double after = barePngquant(input, home.folder() / "bare.png");
        bare.push_back((before + after) / 2);
        overhead.push_back(whole - bare.back());
    }
    std::printf(
        "overhead %dx%d, %d shots: median %.1f ms, 99th percentile %.1f ms "
        "(bare pngquant: median %.1f ms, 99th percentile %.1f ms)\n",
        size.width(), size.height(), shots, quantile(overhead, 0.5), quantile(overhead, 0.99),
        quantile(bare, 0.5), quantile(bare, 0.99));
}

// Of one burst, from its first file on.
struct Cost {
    double milliseconds = 0;
    double cpuSeconds = 0; // of the tool, of us and of the X server
    long growthKB = 0;
};

Cost xargsBurst(const Home& home, const fs::path& folder)
{
    const auto output = home.folder() / "bare";
    fs::create_directories(output);
    const std::string command = "ls '" + folder.string() + "' | xargs -d '\\n' -P "
        + std::to_string(std::thread::hardware_concurrency())
        + " -I{} pngquant --quality=50-70 --speed=10 --output '" + output.string()
        + "/{}' --force '" + folder.string() + "/{}'";
    const double before = cpuSecondsOfChildren(getpid());
    const auto start = Steady::now();
    ChildProcess shell({"sh", "-c", command}, {});
    if (shell.wait(std::chrono::hours(1)) != 0)
        throw std::runtime_error("xargs failed: " + shell.errors());
    return {millisecondsSince(start), cpuSecondsOfChildren(getpid()) - before};
}

double cpuOfAll(const XServer& server, pid_t program)
{
    return cpuSeconds(program) + cpuSecondsOfChildren(program) + cpuSeconds(server.process());
}

Cost ourBurst(const XServer& server, const fs::path& folder)
{
    Home home;
    Tallowbay tallowbay(server, home);
    const pid_t program = tallowbay.process.pid();
    const long memory = statusOf(program)["VmHWM:"];
    const double before = cpuOfAll(server, program);
    std::size_t count = 0;
    const auto start = Steady::now();
    for (const auto& entry : fs::directory_iterator(folder)) {
        fs::copy_file(entry.path(), home.screenshots() / entry.path().filename());
        ++count;
    }
    if (!tallowbay.waitForLine(updated(count), 1, std::chrono::hours(1)))
        throw std::runtime_error("the burst did not arrive");
    const double time = millisecondsSince(start);
    std::this_thread::sleep_for(std::chrono::milliseconds(1500)); // for the last toast
    return {time, cpuOfAll(server, program) - before, statusOf(program)["VmHWM:"] - memory};
}

void makeBurst(const fs::path& folder, int count)
{
    fs::create_directories(folder);
    for (int shot = 0; shot < count; ++shot)
        writeFile(
            folder / ("Screenshot " + std::to_string(shot) + ".png"),
            screenshotOf({1920, 1080}, shot % 10));
}

void measureBurst(const XServer& server, int count, int rounds)
{
    const Home home;
    const auto folder = home.folder() / "burst";
    makeBurst(folder, count);
    std::vector<double> times;
    std::vector<double> costs;
    for (int round = 0; round < rounds; ++round) {
        const Cost bare = xargsBurst(home, folder);
        const Cost ours = ourBurst(server, folder);
        times.push_back(ours.milliseconds / bare.milliseconds);
        costs.push_back(ours.cpuSeconds / bare.cpuSeconds);
        std::printf(
            "burst of %d, round %d: %.0f ms, bare xargs %.0f ms, ratio %.3f; processor time %.2f "
            "s, "
            "bare xargs %.2f s, ratio %.3f; peak memory grew by %ld KB\n",
            count, round + 1, ours.milliseconds, bare.milliseconds, times.back(), ours.cpuSeconds,
            bare.cpuSeconds, costs.back(), ours.growthKB);
    }
    std::printf(
        "burst of %d: median ratio %.3f, of processor time %.3f\n", count, quantile(times, 0.5),
        quantile(costs, 0.5));
}

void measureIdle(const XServer& server, int seconds)
{
    Home home;
    Tallowbay tallowbay(server, home);
    std::this_thread::sleep_for(std::chrono::seconds(2)); // past its start
    const pid_t process = tallowbay.process.pid();
    const double before = cpuSeconds(process);
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const double used = cpuSeconds(process) - before;
    std::printf(
        "idle for %d s: %.3f %% of a core, resident %.1f MB (of which shared files %.1f MB)\n",
        seconds, used / seconds * 100, double(statusOf(process)["VmRSS:"]) / 1024,
        double(statusOf(process)["RssFile:"]) / 1024);
}

} // namespace

int main(int argc, char** argv)
try {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    Options options;
    parseOptions(
        argc, argv,
        {{"--shots", &options.shots},
         {"--burst", &options.burst},
         {"--rounds", &options.rounds},
         {"--idle", &options.idleSeconds}});
    std::setbuf(stdout, nullptr);
    XServer server;
    server.startWindowManager();
    if (options.shots > 0) {
        measureOverhead(server, {1920, 1080}, options.shots);
        measureOverhead(server, {3840, 2160}, options.shots);
    }
    if (options.burst > 0)
        measureBurst(server, options.burst, options.rounds);
    if (options.idleSeconds > 0)
        measureIdle(server, options.idleSeconds);
    return 0;
} catch (const std::exception& error) {
    std::cerr << "pipeline_bench: " << error.what() << '\n';
    return 1;
}
