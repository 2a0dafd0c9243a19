#include "platform/headless/MemoryPasteboard.h"

#include <utility>

namespace tallowbay::headless {

void MemoryPasteboard::replace(std::vector<std::filesystem::path> paths, std::string written)
{
    files = std::move(paths);
    text = std::move(written);
    textIsOurs = false;
    ++changes;
}

void MemoryPasteboard::clear()
{
    replace({}, {});
}

void MemoryPasteboard::holdPaste(std::chrono::milliseconds)
{
    clear();
    const bool another = holdsPaste;
    endPatience();
    holdsPaste = !another;
}

bool MemoryPasteboard::releasePaste()
{
    holdsPaste = false;
    if (!std::exchange(hasAsked, false))
        return false;
    given = files;
    return true;
}

void MemoryPasteboard::askForFiles()
{
    given.reset();
    hasAsked = holdsPaste;
    if (!holdsPaste)
        given = files;
}

void MemoryPasteboard::endPatience()
{
    holdsPaste = false;
    if (std::exchange(hasAsked, false))
        given.emplace();
}

void MemoryPasteboard::writeFiles(const std::vector<std::filesystem::path>& paths)
{
    replace(paths, {});
}

void MemoryPasteboard::writeText(const std::string& written)
{
    replace({}, written);
    textIsOurs = true;
}

bool MemoryPasteboard::handOver(std::chrono::milliseconds)
{
    if (!textIsOurs || !desktopKeepsTexts)
        return false;
    keptText = text;
    return true;
}

void MemoryPasteboard::copyElsewhere(std::vector<std::filesystem::path> paths)
{
    replace(std::move(paths), {});
}

void MemoryPasteboard::copyTextElsewhere(std::string copied)
{
    replace({}, std::move(copied));
}

} // namespace tallowbay::headless
