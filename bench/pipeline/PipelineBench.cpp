// What the program costs beside the compressing tool itself: per screenshot, in a burst, and when
// nothing happens. Each figure stands beside its baseline from the same run, since machines differ
// and their speed drifts.
//
//   pipeline_bench [--shots N] [--burst N] [--idle SECONDS]

#include "desktop/program/Home.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/XServer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <numeric>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tallowbay::test;
using Steady = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;
namespace fs = std::filesystem;

namespace {

struct Options {
    int shots = 100;
    int burst = 100;
    int idleSeconds = 60;
};

// A desktop with windows full of text, different for each number.
void drawDesktop(QPainter& painter, const QSize& size, int number)
{
    QLinearGradient sky(0, 0, size.width(), size.height());
    sky.setColorAt(0, QColor::fromHsv((number * 37) % 360, 120, 160));
    sky.setColorAt(1, QColor(24, 28, 46));
    painter.fillRect(QRect(QPoint(), size), sky);
    for (int window = 0; window < 3; ++window) {
        const QRect frame(
            80 + window * size.width() / 4, 60 + window * 90, size.width() / 2,
            size.height() * 2 / 3);
        painter.fillRect(frame, window % 2 ? QColor(250, 250, 252) : QColor(30, 32, 38));
        painter.setPen(window % 2 ? QColor(40, 42, 50) : QColor(205, 208, 216));
        for (int row = 0; row < frame.height() / 22 - 1; ++row)
            painter.drawText(
                frame.left() + 20, frame.top() + 30 + row * 22,
                QString("%1  value_%2 = compute(%3, \"shot %4\");")
                    .arg(row)
                    .arg(row * 7919 % 1000)
                    .arg(row * 104729 % 10000)
                    .arg(number));
    }
}

std::string screenshotOf(const QSize& size, int number)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setFont(QFont("DejaVu Sans Mono", 11));
    drawDesktop(painter, size, number);
    painter.end();
    QTemporaryDir folder;
    const QString path = folder.filePath("a.png");
    image.save(path, "PNG");
    std::ifstream file(path.toStdString(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// As the program runs it.
double barePngquant(const fs::path& input, const fs::path& output)
{
    const auto start = Steady::now();
    ChildProcess tool(
        {"pngquant", "--quality=50-70", "--speed=10", "--output", output, "--force", input}, {});
    if (tool.wait() != 0)
        throw std::runtime_error("pngquant failed");
    return Milliseconds(Steady::now() - start).count();
}

double quantile(std::vector<double> values, double part)
{
    std::ranges::sort(values);
    return values[std::min(values.size() - 1, std::size_t(part * double(values.size())))];
}

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
    return Milliseconds(Steady::now() - complete).count();
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

std::map<std::string, long> statusOf(pid_t process)
{
    std::map<std::string, long> values;
    std::ifstream file("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string key;
        long value = 0;
        if (words >> key >> value)
            values[key] = value;
    }
    return values;
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
    return Milliseconds(Steady::now() - start).count();
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
    const double time = Milliseconds(Steady::now() - start).count();
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

double cpuSeconds(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::istringstream fields(text.substr(text.rfind(')') + 2));
    std::vector<std::string> values{std::istream_iterator<std::string>(fields), {}};
    const double ticks = std::stod(values.at(11)) + std::stod(values.at(12));
    return ticks / double(sysconf(_SC_CLK_TCK));
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

Options parse(int argc, char** argv)
{
    Options options;
    const std::map<std::string, int*> known{
        {"--shots", &options.shots}, {"--burst", &options.burst}, {"--idle", &options.idleSeconds}};
    for (int at = 1; at + 1 < argc; at += 2)
        *known.at(argv[at]) = std::stoi(argv[at + 1]);
    return options;
}

} // namespace

int main(int argc, char** argv)
try {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const Options options = parse(argc, argv);
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
