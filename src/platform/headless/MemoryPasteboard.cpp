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
