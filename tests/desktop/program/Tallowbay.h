#pragma once

#include "desktop/program/Home.h"
#include "desktop/support/ChildProcess.h"
#include "desktop/support/XServer.h"

#include <chrono>
#include <string>
#include <vector>

namespace tallowbay::test {

// The real program on a display and in a home of the test's.
class Tallowbay {
public:
    // A launcher is a command that runs the program it gets as its last argument.
    // Returns when it listens for pastes. Throws std::runtime_error, with its words, if it does not
    // come so far.
    Tallowbay(const XServer&, const Home&, const std::vector<std::string>& launcher = {});

    // Its lines on standard output so far.
    std::vector<std::string> lines() const;

    // Whether the line appears, as often as told, before the limit is over.
    bool waitForLine(
        const std::string& line, std::size_t times = 1,
        std::chrono::milliseconds limit = std::chrono::seconds(20)) const;

    // Asks it to quit; its exit status.
    std::optional<int> quit();

    ChildProcess process;
};

// The program that takes pastes, with its window in front.
class PasteWindow {
public:
    explicit PasteWindow(const XServer&, const Home&);

    // By a real key press in its window.
    void pressPaste() const;

    // What arrived at each paste, one list a paste; a paste whose files are not all told yet is not
    // counted.
    std::vector<std::vector<std::filesystem::path>> pastes() const;
    bool waitForPastes(std::size_t count) const;

private:
    const XServer& server;
    std::unique_ptr<ChildProcess> process;
};

// Whether a compression waits at the gate before pngquant, or works behind it.
bool waitForCompression(const XServer&, const Home&);

// The text without its last line feed, line by line.
std::vector<std::string> splitLines(const std::string&);

} // namespace tallowbay::test
