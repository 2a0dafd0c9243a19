#include "app/StatusReport.h"

#include "base/Paths.h"

#include <algorithm>

namespace tallowbay {

namespace fs = std::filesystem;
using namespace std::chrono;

namespace {

// A table of two columns, indented.
class Columns {
public:
    void add(std::string first, std::string second)
    {
        rows.emplace_back(std::move(first), std::move(second));
    }

    std::string text() const
    {
        std::size_t width = 0;
        for (const auto& [first, second] : rows)
            width = std::max(width, widthOf(first));
        std::string lines;
        for (const auto& [first, second] : rows)
            lines += "  " + first + std::string(width - widthOf(first) + 2, ' ') + second + "\n";
        return lines;
    }

private:
    // In characters of UTF-8; few are wider than one column.
    static std::size_t widthOf(const std::string& text)
    {
        return static_cast<std::size_t>(std::ranges::count_if(
            text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
    }

    std::vector<std::pair<std::string, std::string>> rows;
};

std::string stateOf(const ScreenshotWatcher::WatchedPlace& place, const ProgramStatus& status)
{
    std::string text = place.place.reason;
    if (place.place.withSubfolders)
        text += ", with all below";
    if (place.coverage == FileEvents::Coverage::nearestFolders)
        text += " (too many folders: the deepest are not watched)";
    if (place.isIdle || place.coverage == FileEvents::Coverage::nothing)
        text += " (cannot be watched)";
    else if (std::ranges::count(status.absentPlaces, place.place.folder) > 0)
        text += " (not there yet)";
    return text;
}

std::string placesText(const ProgramStatus& status)
{
    if (!status.setupDone)
        return "No folder is watched before the first-run window is done.\n";
    Columns columns;
    for (const auto& place : status.places)
        columns.add(pathForPeople(place.place.folder, status.home), stateOf(place, status));
    return "Watched for screenshots:\n" + columns.text();
}

std::string ago(system_clock::duration passed)
{
    const auto count = [](auto number, const char* unit) {
        return std::to_string(number) + " " + unit + (number == 1 ? "" : "s") + " ago";
    };
    if (passed < 2min)
        return count(std::max<std::int64_t>(duration_cast<seconds>(passed).count(), 0), "second");
    if (passed < 2h)
        return count(duration_cast<minutes>(passed).count(), "minute");
    return count(duration_cast<hours>(passed).count(), "hour");
}

std::string noticedText(const ProgramStatus& status)
{
    if (!status.lastNoticed)
        return "No screenshot has been noticed yet.\n";
    return "Noticed last: " + pathForPeople(status.lastNoticed->file, status.home) + ", "
        + ago(status.now - status.lastNoticed->when) + "\n";
}

// The keys that carry the parts of a combination on this desktop.
std::string keysOf(const HotkeyConfig& config)
{
    static constexpr std::pair<HotkeyModifiers, const char*> names[] = {
        {hotkeyModifier::control, "Super"},
        {hotkeyModifier::command, "Ctrl"},
        {hotkeyModifier::option, "Alt"},
        {hotkeyModifier::shift, "Shift"}};
    std::string keys;
    for (const auto& [modifier, name] : names)
        if (config.modifiers & modifier)
            keys += std::string(name) + "+";
    // The key itself may be "+".
    const std::string& shown = config.displayString;
    return keys + shown.substr(shown.rfind('+', shown.size() - 2) + 1);
}

std::string stateOf(const ProgramStatus::Hotkey& hotkey)
{
    if (!hotkey.working)
        return "does not work: another program owns these keys";
    if (!hotkey.working->hasKeysOf(hotkey.wanted))
        return "instead of " + keysOf(hotkey.wanted) + ", which another program owns";
    return "works";
}

std::string hotkeysText(const ProgramStatus& status)
{
    if (!status.setupDone)
        return "No hotkey works before the first-run window is done.\n";
    Columns columns;
    for (const auto& hotkey : status.hotkeys)
        columns.add(
            keysOf(hotkey.working.value_or(hotkey.wanted)),
            hotkey.purpose + ": " + stateOf(hotkey));
    return "Hotkeys:\n" + columns.text();
}

std::string troublesText(const ProgramStatus& status)
{
    if (status.troubles.empty())
        return "Everything else works in this session.\n";
    std::string text = "What does not work:\n";
    for (const std::string& trouble : status.troubles)
        text += "  " + trouble + "\n";
    return text;
}

} // namespace

std::string statusReport(const ProgramStatus& status)
{
    return "Tallowbay is running.\n\n" + placesText(status) + "\n" + noticedText(status) + "\n"
        + hotkeysText(status) + "\n" + troublesText(status);
}

} // namespace tallowbay
