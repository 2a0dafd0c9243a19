#include "desktop/program/Tallowbay.h"

#include "desktop/support/Wait.h"

#include <algorithm>
#include <csignal>
#include <sstream>
#include <stdexcept>

namespace tallowbay::test {

namespace {

Environment combined(const XServer& server, const Home& home)
{
    Environment environment = server.environment();
    for (const auto& [name, value] : home.environment())
        environment[name] = value;
    return environment;
}

std::vector<std::string> started(std::vector<std::string> launcher)
{
    launcher.push_back(TALLOWBAY_PROGRAM);
    return launcher;
}

} // namespace

Tallowbay::Tallowbay(
    const XServer& server, const Home& home, const std::vector<std::string>& launcher)
    : process(started(launcher), combined(server, home))
{
    if (!waitForLine("Paste watcher running (Cmd+V resets batch)"))
        throw std::runtime_error(
            "Tallowbay does not start: " + process.output() + process.errors());
}

std::vector<std::string> Tallowbay::lines() const
{
    return splitLines(process.output());
}

bool Tallowbay::waitForLine(
    const std::string& line, std::size_t times, std::chrono::milliseconds limit) const
{
    const auto seen = [&] {
        const auto all = lines();
        return std::size_t(std::ranges::count(all, line)) >= times;
    };
    return waitUntil(seen, limit);
}

std::optional<int> Tallowbay::quit()
{
    process.signal(SIGTERM);
    return process.wait();
}

PasteWindow::PasteWindow(const XServer& server, const Home& home)
    : server(server)
    , process(std::make_unique<ChildProcess>(
          std::vector<std::string>{PASTE_TARGET_PROGRAM}, combined(server, home)))
{
    if (!waitUntil([this] { return process->output().starts_with("ready"); }))
        throw std::runtime_error("the paste target does not start: " + process->errors());
}

void PasteWindow::pressPaste() const
{
    server.run({"xdotool", "key", "ctrl+v"});
}

std::vector<std::vector<std::filesystem::path>> PasteWindow::pastes() const
{
    const std::string head = "pasted: ";
    std::vector<std::vector<std::filesystem::path>> all;
    const auto lines = splitLines(process->output());
    for (std::size_t at = 0; at < lines.size(); ++at) {
        if (!lines[at].starts_with(head))
            continue;
        const std::size_t count = std::stoul(lines[at].substr(head.size()));
        if (at + count >= lines.size())
            break;
        const auto first = lines.begin() + std::ptrdiff_t(at) + 1;
        all.emplace_back(first, first + std::ptrdiff_t(count));
    }
    return all;
}

bool PasteWindow::waitForPastes(std::size_t count) const
{
    return waitUntil([&] { return pastes().size() >= count; });
}

bool waitForCompression(const XServer& server, const Home& home)
{
    return waitUntil([&] {
        return server.run({"pgrep", "-f", home.toolFolder() / "pngquant"}).status == 0;
    });
}

std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

} // namespace tallowbay::test
