#include "platform/posix/preferences/BackgroundSetting.h"

#include "platform/posix/ChildProcess.h"

#include <utility>

namespace tallowbay::posix {

BackgroundSetting::BackgroundSetting(
    Dispatch& dispatch, std::vector<std::string> commandLine, std::filesystem::path database)
    : BackgroundSetting(dispatch, std::move(commandLine), std::move(database), Intervals())
{
}

BackgroundSetting::BackgroundSetting(
    Dispatch& dispatch, std::vector<std::string> commandLine, std::filesystem::path database,
    Intervals intervals)
    : dispatch(dispatch)
    , commandLine(std::move(commandLine))
    , database(std::move(database))
    , intervals(intervals)
    , queue(dispatch.makeSerialQueue("com.quarnel.tallowbay.setting"))
{
}

const std::optional<std::string>& BackgroundSetting::lastKnown()
{
    if (isDue())
        ask();
    return answer;
}

bool BackgroundSetting::isDue() const
{
    if (commandLine.empty() || asking)
        return false;
    if (!askedAt)
        return true;
    if (std::chrono::steady_clock::now() < *askedAt + interval())
        return false;
    return failures > 0 || FileVersion::of(database) != askedFor;
}

std::chrono::milliseconds BackgroundSetting::interval() const
{
    return failures > 1 ? intervals.afterFailures : intervals.shortest;
}

void BackgroundSetting::ask()
{
    asking = true;
    askedAt = std::chrono::steady_clock::now();
    askedFor = FileVersion::of(database);
    auto done = lifetime.guard([this](std::optional<std::string> text) { take(std::move(text)); });
    queue->async([&dispatch = dispatch, words = commandLine, done = std::move(done)]() mutable {
        auto text = outputOf(words.front(), {words.begin() + 1, words.end()});
        dispatch.mainAsync([done, text = std::move(text)]() mutable { done(std::move(text)); });
    });
}

void BackgroundSetting::take(std::optional<std::string> text)
{
    asking = false;
    failures = text ? 0 : failures + 1;
    if (text)
        answer = std::move(text);
}

} // namespace tallowbay::posix
