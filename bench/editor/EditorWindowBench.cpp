// What the editor's window costs whoever has many large screenshots in the strip: opening, keys,
// scrolling, and memory. Each figure stands beside its baseline from the same run.
//
//   editor_window_bench [--screenshots N] [--scale N] [--rounds N] [--idle SECONDS]

#include "ManyScreenshots.h"
#include "desktop/program/Tallowbay.h"
#include "desktop/support/SessionBus.h"
#include "support/Measures.h"

#include <cstdio>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <thread>

#include <QGuiApplication>
#include <QImage>

#include <xcb/xtest.h>

using namespace tallowbay::bench;
using namespace tallowbay::test;
using namespace std::chrono_literals;

namespace {

struct Options {
    int screenshots = 500;
    int scale = 1;
    int rounds = 20;
    int idleSeconds = 30;
};

// Keys and the wheel, as fast as a device's.
class Hand {
public:
    enum Key : std::uint8_t { escape = 9, control = 37, alt = 64, space = 65, left = 113 };
    enum Wheel : std::uint8_t { up = 4, down = 5 };

    explicit Hand(const XServer& server)
        : client(server.display())
    {
    }

    void press(std::vector<Key> keys)
    {
        for (const Key key : keys)
            fake(XCB_KEY_PRESS, key);
        for (auto key = keys.rbegin(); key != keys.rend(); ++key)
            fake(XCB_KEY_RELEASE, *key);
        client.sync();
    }

    void turn(Wheel direction)
    {
        fake(XCB_BUTTON_PRESS, direction);
        fake(XCB_BUTTON_RELEASE, direction);
        client.sync();
    }

    void moveTo(Place place)
    {
        xcb_test_fake_input(
            client.connection(), XCB_MOTION_NOTIFY, 0, 0, client.root(), std::int16_t(place.x),
            std::int16_t(place.y), 0);
        client.sync();
    }

private:
    void fake(std::uint8_t type, std::uint8_t detail)
    {
        xcb_test_fake_input(client.connection(), type, detail, 0, XCB_NONE, 0, 0, 0);
    }

    XClient client;
};

void report(const char* what, const std::vector<double>& times)
{
    std::printf(
        "%s: median %.0f ms, 90th percentile %.0f ms, longest %.0f ms\n", what,
        quantile(times, 0.5), quantile(times, 0.9), quantile(times, 1));
}

// The program in that home, on a screen of its own.
class Bench {
public:
    explicit Bench(const Options& options)
        : options(options)
        , server({1920 * options.scale, 1080 * options.scale, {}})
        , shots(std::size_t(options.screenshots), 16 / options.scale)
        , screen(server, options.scale)
        , hand(server)
    {
        server.startWindowManager();
        program.emplace(
            server, shots.home(),
            std::vector<std::string>{
                "env", "QT_SCALE_FACTOR=" + std::to_string(options.scale),
                "DBUS_SESSION_BUS_ADDRESS=" + bus.address()});
    }

    void idle();
    void openFirst();
    void reopen();
    void select();
    void holdKey();
    void scroll();
    void selectAll();

private:
    struct Opening {
        double begun = 0; // something is seen
        double whole = 0; // all of the window, no longer transparent
        double picture = 0; // with the selected screenshot on the canvas
        double thumbnails = 0; // and all that are in view
    };

    pid_t process() const { return program->process.pid(); }
    double memory(const char* key) const { return double(statusOf(process())[key]) / 1024; }
    void tellMemory(const char* when) const
    {
        std::printf(
            "memory %s: resident %.1f MB, at most %.1f MB (of which shared files %.1f MB)\n", when,
            memory("VmRSS:"), memory("VmHWM:"), memory("RssFile:"));
    }

    // Returns how long it took from the given moment.
    double until(
        const char* what, Steady::time_point from, const std::function<bool()>& condition) const;

    void rest() const; // until it has nothing more to do
    Opening open(const std::function<void()>& ask);
    void close();
    Rgb header(std::size_t index) const { return EditorScreen::headers[index % 5]; }
    bool showsPicture(std::size_t index) const;
    Place lastCell(int fromRight) const;
    bool showsThumbnails() const;
    double pressLeft(); // until the neighbour stands in the header
    std::string strip(); // a row of its pixels
    std::vector<double> frames(const std::vector<Hand::Wheel>& turns); // the time between them

    Options options;
    XServer server;
    SessionBus bus;
    ManyScreenshots shots;
    EditorScreen screen;
    Hand hand;
    XClient eyes{server.display()};
    std::optional<Tallowbay> program;
    std::size_t selected = 0;
    double selectingAtRest = 0;
};

// Opens and closes it.
const std::vector<Hand::Key> hotkey{Hand::control, Hand::alt, Hand::space};

double Bench::until(
    const char* what, Steady::time_point from, const std::function<bool()>& condition) const
{
    while (!condition()) {
        if (millisecondsSince(from) > 60'000)
            throw std::runtime_error(
                std::string("this did not happen: ") + what + "\n" + program->process.errors());
        std::this_thread::sleep_for(500us);
    }
    return millisecondsSince(from);
}

void Bench::rest() const
{
    double before = -1;
    for (double now = cpuSeconds(process()); now != before; now = cpuSeconds(process())) {
        before = now;
        std::this_thread::sleep_for(400ms);
    }
}

bool Bench::showsPicture(std::size_t index) const
{
    const Rgb seen = screen.pixel(screen.canvas(0, 0));
    const Rgb line = shots.lineColor(index);
    for (int shift = 0; shift < 24; shift += 8)
        if (std::abs(int(seen >> shift & 0xff) - int(line >> shift & 0xff)) > 32)
            return false;
    return true;
}

// Of a strip that is scrolled to its end, in the upper part of its picture.
Place Bench::lastCell(int fromRight) const
{
    const int width = 1920 * options.scale;
    return {width - (24 + 100 + fromRight * 224) * options.scale, screen.cell(0).y};
}

bool Bench::showsThumbnails() const
{
    for (int fromRight = 0; fromRight < 8; ++fromRight)
        if (screen.shows(lastCell(fromRight), 0x000000))
            return false;
    return true;
}

void Bench::idle()
{
    std::this_thread::sleep_for(2s); // past its start
    const double before = cpuSeconds(process());
    std::this_thread::sleep_for(std::chrono::seconds(options.idleSeconds));
    std::printf(
        "idle for %d s, the editor never opened: %.3f %% of a core\n", options.idleSeconds,
        (cpuSeconds(process()) - before) / options.idleSeconds * 100);
    tellMemory("before the editor is opened");
}

Bench::Opening Bench::open(const std::function<void()>& ask)
{
    const Rgb before = screen.pixel(screen.header());
    const auto start = Steady::now();
    ask();
    Opening opening;
    opening.begun =
        until("the window is seen", start, [&] { return !screen.shows(screen.header(), before); });
    opening.whole = until("the window is whole", start, [&] {
        return screen.shows(screen.header(), header(selected));
    });
    opening.picture = until("the picture is seen", start, [&] { return showsPicture(selected); });
    opening.thumbnails = until("thumbnails are seen", start, [&] { return showsThumbnails(); });
    return opening;
}

void Bench::close()
{
    hand.press({Hand::escape});
    until("the editor closes", Steady::now(), [&] { return !screen.isShown(); });
    rest();
}

void Bench::openFirst()
{
    selected = shots.count() - 1;
    const Opening first = open([&] { hand.press(hotkey); });
    std::printf(
        "opened for the first time, with %zu screenshots: seen after %.0f ms, whole after %.0f ms "
        "(of which 200 ms fade), the picture after %.0f ms, thumbnails after %.0f ms\n",
        shots.count(), first.begun, first.whole, first.picture, first.thumbnails);
    tellMemory("with the editor open");
}

void Bench::reopen()
{
    std::vector<double> begun, whole, byCommand, processor;
    for (int round = 0; round < options.rounds; ++round) {
        close();
        const double before = cpuSeconds(process());
        const Opening opening = open([&] { hand.press(hotkey); });
        begun.push_back(opening.begun);
        whole.push_back(opening.whole);
        processor.push_back((cpuSeconds(process()) - before) * 1000);
        close();
        byCommand.push_back(open([&] {
                                ChildProcess command(
                                    {TALLOWBAY_PROGRAM, "open"},
                                    {{"DBUS_SESSION_BUS_ADDRESS", bus.address()},
                                     {"HOME", shots.home().folder()},
                                     {"DISPLAY", server.display()}});
                                command.wait();
                            }).whole);
    }
    report("opened again, by key, seen", begun);
    report("opened again, by key, whole (of which 200 ms fade)", whole);
    report("  processor time of that", processor);
    report("opened again, by command, whole (of which 200 ms fade)", byCommand);
}

double Bench::pressLeft()
{
    const auto start = Steady::now();
    hand.press({Hand::left});
    --selected;
    return until("the neighbour is selected", start, [&] {
        return screen.shows(screen.header(), header(selected));
    });
}

// With nothing else to do.
void Bench::select()
{
    std::vector<double> decoding, keys, pictures;
    for (int round = 0; round < options.rounds; ++round) {
        rest();
        auto start = Steady::now();
        const QImage decoded(QString::fromStdString(shots.picture(selected - 1)));
        decoding.push_back(millisecondsSince(start));
        start = Steady::now();
        keys.push_back(pressLeft());
        pictures.push_back(until("the picture", start, [&] { return showsPicture(selected); }));
    }
    selectingAtRest = quantile(keys, 0.5);
    report("an arrow key at rest, until the header follows", keys);
    report("an arrow key at rest, until the picture is seen", pictures);
    report("  bare decoding of the same picture", decoding);
}

// As fast as a key repeats, through parts of the strip whose thumbnails are not there.
void Bench::holdKey()
{
    std::vector<double> keys;
    for (int press = 0; press < 150 && selected > 0; ++press) {
        const auto start = Steady::now();
        keys.push_back(pressLeft());
        std::this_thread::sleep_until(start + 33ms);
    }
    report("an arrow key that is held, until the header follows", keys);
    std::printf("  of its time at rest: %.2f\n", quantile(keys, 0.5) / selectingAtRest);
}

std::string Bench::strip()
{
    const auto width = std::uint16_t(1920 * options.scale);
    const auto cookie = xcb_get_image(
        eyes.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, eyes.root(), 0,
        std::int16_t(screen.checkbox(0).y), width, 1, ~0u);
    auto* const reply = xcb_get_image_reply(eyes.connection(), cookie, nullptr);
    const auto* bytes = reinterpret_cast<const char*>(xcb_get_image_data(reply));
    std::string row(bytes, std::size_t(xcb_get_image_data_length(reply)));
    std::free(reply);
    return row;
}

std::vector<double> Bench::frames(const std::vector<Hand::Wheel>& turns)
{
    std::vector<double> gaps;
    std::string seen = strip();
    auto last = Steady::now();
    for (const Hand::Wheel turn : turns) {
        const auto start = Steady::now();
        hand.turn(turn);
        while (millisecondsSince(start) < 60) {
            std::string now = strip();
            if (now == seen)
                continue;
            gaps.push_back(millisecondsSince(last));
            last = Steady::now();
            seen = std::move(now);
        }
    }
    return gaps;
}

void Bench::scroll()
{
    rest();
    hand.moveTo(screen.cell(3));
    const auto cold = frames(std::vector<Hand::Wheel>(100, Hand::down));
    report("scrolling into thumbnails that are not there, from one frame to the next", cold);
    rest();
    std::vector<Hand::Wheel> toAndFro;
    for (int turn = 0; turn < 100; ++turn)
        toAndFro.push_back(turn / 20 % 2 ? Hand::down : Hand::up);
    report("  over thumbnails that are there", frames(toAndFro));
    tellMemory("after scrolling");
}

void Bench::selectAll()
{
    while (selected > 0) {
        const auto start = Steady::now();
        pressLeft();
        if (selected % 2 == 0)
            until("the picture is seen", start, [&] { return showsPicture(selected); });
    }
    tellMemory("after selecting every screenshot");
    rest();
    tellMemory("a moment later");
    close();
    tellMemory("with the editor closed again");
}

} // namespace

int main(int argc, char** argv)
try {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    Options options;
    parseOptions(
        argc, argv,
        {{"--screenshots", &options.screenshots},
         {"--scale", &options.scale},
         {"--rounds", &options.rounds},
         {"--idle", &options.idleSeconds}});
    std::setbuf(stdout, nullptr);
    Bench bench(options);
    bench.idle();
    bench.openFirst();
    bench.reopen();
    bench.select();
    bench.holdKey();
    bench.scroll();
    bench.selectAll();
    return 0;
} catch (const std::exception& error) {
    std::cerr << "editor_window_bench: " << error.what() << '\n';
    return 1;
}
