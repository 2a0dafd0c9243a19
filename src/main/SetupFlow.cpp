#include "main/SetupFlow.h"

#include "platform/FileSystem.h"
#include "platform/Permissions.h"
#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"

#include <utility>

namespace tallowbay {

using Check = views::SetupNotice::Check;

namespace {

Check checkOf(std::string title, std::string purpose, const Permission& permission)
{
    if (!permission.granted() && !permission.reason.empty())
        purpose += ". " + permission.reason;
    return {std::move(title), std::move(purpose), permission.granted()};
}

std::string forPeople(const std::filesystem::path& folder, const std::filesystem::path& home)
{
    const auto relative = folder.lexically_relative(home);
    const bool below = !relative.empty() && *relative.begin() != "..";
    return below ? "~/" + relative.native() : folder.native();
}

} // namespace

SetupFlow::SetupFlow(const Platform& platform)
    : platform(platform)
    , location(platform.defaults, platform.fileSystem, platform.desktop)
{
}

void SetupFlow::show(std::function<void()> whenDone)
{
    completion = std::move(whenDone);
    notice = std::make_unique<views::SetupNotice>(checks(), [this] { complete(); });
    notice->present();
}

std::vector<Check> SetupFlow::checks() const
{
    const bool toFolder = !location.targetIsClipboard();
    const std::string folder =
        forPeople(location.systemScreenshotDirectory(), platform.fileSystem.homeFolder());
    return {
        {"Screenshot Location",
         toFolder ? "Screenshots are expected in " + folder
                  : "Screenshots must be saved to a folder",
         toFolder},
        checkOf(
            "Enable Accessibility", "Needed to detect paste actions",
            platform.permissions.accessibility()),
        checkOf(
            "Allow Screen Recording", "Required for text extraction (OCR)",
            platform.permissions.screenRecording()),
    };
}

void SetupFlow::complete()
{
    const auto done = std::exchange(completion, nullptr);
    if (!done)
        return;
    platform.defaults.standard().set("onboardingCompleted", {true});
    notice.reset();
    done();
}

} // namespace tallowbay
