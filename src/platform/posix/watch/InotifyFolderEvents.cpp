#include "platform/posix/watch/InotifyFolderEvents.h"

#include "platform/posix/watch/InotifyThread.h"
#include "platform/posix/watch/MainQueueHandler.h"
#include "platform/posix/watch/WatchedRoot.h"

#include <utility>

#include <sys/inotify.h>

namespace tallowbay::posix {

namespace {

using Events = std::vector<InotifyEvent>;

constexpr std::uint32_t entryMask = IN_CREATE | IN_DELETE | IN_MOVED_TO | IN_MOVED_FROM;

// One watched folder. Everything but the start runs on its thread.
class FolderStream {
public:
    FolderStream(const std::filesystem::path& folder, std::function<void()> changed)
        : changed(std::move(changed))
        , tree(inotify, folder, entryMask)
    {
    }

    bool start()
    {
        if (!inotify || !tree.watchRoot())
            return false;
        thread.emplace(inotify, [this](const Events& events) { return turn(events); });
        return true;
    }

private:
    MonotonicTime turn(const Events& events)
    {
        bool news = !events.empty();
        for (const auto& event : events) {
            if (root.isConcerned(event))
                root.checkSoon();
            if (event.mask & IN_IGNORED)
                tree.ended(event.watch);
        }
        news = root.checkIfDue() || news;
        if (news)
            changed();
        return root.dueAt();
    }

    const std::function<void()> changed;
    Inotify inotify;
    FolderTree tree;
    WatchedRoot root{tree};
    std::optional<InotifyThread> thread;
};

} // namespace

std::optional<Subscription> InotifyFolderEvents::start(
    const std::filesystem::path& folder, Handler handler)
{
    MainQueueHandler<> onMain(dispatch, std::move(handler));
    auto stream =
        std::make_shared<FolderStream>(folder, [onMain = std::move(onMain)] { onMain.post(); });
    if (!stream->start())
        return std::nullopt;
    return Subscription([stream = std::move(stream)]() mutable { stream.reset(); });
}

} // namespace tallowbay::posix
