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
    const Hold next = holdsPaste() ? Hold::refuses : Hold::waits;
    dropPaste();
    if (holdsPastes)
        hold = next;
}

void MemoryPasteboard::releasePaste(std::function<void(bool taken)> ended)
{
    released = std::move(ended);
    if (!holdsPaste())
        endHold(false);
    else if (hasAsked)
        give();
}

void MemoryPasteboard::dropPaste()
{
    refuse();
    released = nullptr;
    hold = Hold::none;
}

void MemoryPasteboard::askForFiles()
{
    given.reset();
    hasAsked = true;
    if (hold == Hold::refuses)
        refuse();
    else if (!holdsPaste() || released)
        give();
}

void MemoryPasteboard::endPatience()
{
    endHold(false);
}

void MemoryPasteboard::give()
{
    given = files;
    hasAsked = false;
    endHold(!files.empty());
    if (const auto taken = onTaken; taken && !given->empty())
        taken();
}

void MemoryPasteboard::refuse()
{
    if (std::exchange(hasAsked, false))
        given.emplace();
}

void MemoryPasteboard::endHold(bool taken)
{
    const auto ended = std::exchange(released, nullptr);
    dropPaste();
    if (ended)
        ended(taken);
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
    dropPaste();
    if (!textIsOurs || !desktopKeepsTexts)
        return false;
    keptText = text;
    return true;
}

void MemoryPasteboard::copyElsewhere(std::vector<std::filesystem::path> paths)
{
    replace(std::move(paths), {});
    endHold(false);
}

void MemoryPasteboard::copyTextElsewhere(std::string copied)
{
    replace({}, std::move(copied));
    endHold(false);
}

} // namespace tallowbay::headless
