// What the program costs beside the compressing tool itself: per screenshot, in a burst, and when
// nothing happens. Each figure stands beside its baseline from the same run, since machines differ
// and their speed drifts.
//
//   pipeline_bench [--shots N] [--burst N] [--idle SECONDS]

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

using namespace tallowbay::test;
using namespace tallowbay::bench;
namespace fs = std::filesystem;

namespace {

struct Options {
    int shots = 100;
    int burst = 100;
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

double xargsBurst(const Home& home, const fs::path& folder)
{
    const auto output = home.folder() / "bare";
    fs::create_directories(output);
    const std::string command = "ls '" + folder.string() + "' | xargs -d '\\n' -P "
        + std::to_string(std::thread::hardware_concurrency())
        + " -I{} pngquant --quality=50-70 --speed=10 --output '" + output.string()
        + "/{}' --force '" + folder.string() + "/{}'";
    const auto start = Steady::now();
    ChildProcess shell({"sh", "-c", command}, {});
    if (shell.wait(std::chrono::minutes(10)) != 0)
        throw std::runtime_error("xargs failed: " + shell.errors());
    return millisecondsSince(start);
}

double ourBurst(const XServer& server, const fs::path& folder, long& growthKB)
{
    Home home;
    Tallowbay tallowbay(server, home);
    const long before = statusOf(tallowbay.process.pid())["VmHWM:"];
    std::size_t count = 0;
    const auto start = Steady::now();
    for (const auto& entry : fs::directory_iterator(folder)) {
        fs::copy_file(entry.path(), home.screenshots() / entry.path().filename());
        ++count;
    }
    if (!tallowbay.waitForLine(updated(count), 1, std::chrono::minutes(10)))
        throw std::runtime_error("the burst did not arrive");
    const double time = millisecondsSince(start);
    growthKB = statusOf(tallowbay.process.pid())["VmHWM:"] - before;
    return time;
}

void measureBurst(const XServer& server, int count)
{
    Home home;
    const auto folder = home.folder() / "burst";
    std::vector<double> ratios;
    long growthKB = 0;
    for (int round = 0; round < 3; ++round) {
        fs::remove_all(folder);
        fs::create_directories(folder);
        for (int shot = 0; shot < count; ++shot)
            writeFile(
                folder / ("Screenshot " + std::to_string(shot) + ".png"),
                screenshotOf({1920, 1080}, shot % 10));
        const double bare = xargsBurst(home, folder);
        const double ours = ourBurst(server, folder, growthKB);
        ratios.push_back(ours / bare);
        std::printf(
            "burst of %d, round %d: %.0f ms, bare xargs %.0f ms, ratio %.3f; peak memory "
            "grew by %ld KB\n",
            count, round + 1, ours, bare, ours / bare, growthKB);
    }
    std::printf("burst of %d: median ratio %.3f\n", count, quantile(ratios, 0.5));
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
         {"--idle", &options.idleSeconds}});
    std::setbuf(stdout, nullptr);
    XServer server;
    server.startWindowManager();
    measureOverhead(server, {1920, 1080}, options.shots);
    measureOverhead(server, {3840, 2160}, options.shots);
    measureBurst(server, options.burst);
    measureIdle(server, options.idleSeconds);
    return 0;
} catch (const std::exception& error) {
    std::cerr << "pipeline_bench: " << error.what() << '\n';
    return 1;
}
