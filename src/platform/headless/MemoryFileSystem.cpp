#include "platform/headless/MemoryFileSystem.h"

#include "base/Paths.h"

#include <algorithm>
#include <utility>

namespace tallowbay::headless {

namespace fs = std::filesystem;

MemoryFileSystem::MemoryFileSystem(const Clock& clock)
    : clock(clock)
{
    put("/tmp", true);
    put(homeFolder() / "Desktop", true);
    put(homeFolder() / "Downloads", true);
}

const MemoryFileSystem::Node* MemoryFileSystem::find(const fs::path& path) const
{
    const auto found = nodes.find(path);
    return found == nodes.end() ? nullptr : &found->second;
}

bool MemoryFileSystem::writable(const fs::path& path) const
{
    return std::ranges::none_of(
        readOnly, [&](const fs::path& folder) { return isWithin(path, folder); });
}

MemoryFileSystem::Node& MemoryFileSystem::put(const fs::path& path, bool folder)
{
    if (path.has_relative_path() && !find(path.parent_path()))
        put(path.parent_path(), true);
    const auto now = clock.wallNow();
    const auto [entry, isNew] = nodes.try_emplace(path, Node{folder, {}, now, now, lastNode + 1});
    lastNode += isNew;
    if (isNew)
        tell(path, Change::entryCame);
    return entry->second;
}

void MemoryFileSystem::tell(const fs::path& path, Change change) const
{
    for (const auto& [id, listener] : std::map(listeners))
        (*listener)(path, change);
}

bool MemoryFileSystem::exists(const fs::path& path) const
{
    return find(path) != nullptr;
}

bool MemoryFileSystem::isDirectory(const fs::path& path) const
{
    const Node* node = find(path);
    return node && node->folder;
}

std::optional<WallTime> MemoryFileSystem::creationDate(const fs::path& path) const
{
    const Node* node = find(path);
    return node ? node->created : std::nullopt;
}

std::optional<WallTime> MemoryFileSystem::modificationDate(const fs::path& path) const
{
    const Node* node = find(path);
    return node ? std::optional(node->modified) : std::nullopt;
}

std::optional<FileIdentity> MemoryFileSystem::identity(const fs::path& path) const
{
    const Node* node = find(path);
    return node ? std::optional(FileIdentity{{node->number}}) : std::nullopt;
}

std::optional<fs::path> MemoryFileSystem::homeFolderOf(const std::string& user) const
{
    ++homesAskedFor;
    const auto found = homes.find(user);
    return found == homes.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::uintmax_t> MemoryFileSystem::size(const fs::path& path) const
{
    const Node* node = find(path);
    return node && !node->folder ? std::optional<std::uintmax_t>(node->bytes.size()) : std::nullopt;
}

std::optional<std::vector<fs::path>> MemoryFileSystem::list(const fs::path& folder) const
{
    if (!isDirectory(folder) || unlistable.contains(folder))
        return std::nullopt;
    std::vector<fs::path> entries;
    for (const auto& [path, node] : nodes) {
        if (path.parent_path() == folder && path != folder)
            entries.push_back(path);
    }
    return entries;
}

bool MemoryFileSystem::createFolders(const fs::path& path)
{
    if (const Node* node = find(path))
        return node->folder;
    if (!path.has_relative_path() || !writable(path) || !createFolders(path.parent_path()))
        return false;
    put(path, true);
    return true;
}

bool MemoryFileSystem::remove(const fs::path& path)
{
    if (!find(path) || !writable(path))
        return false;
    std::erase_if(nodes, [&](const auto& entry) { return isWithin(entry.first, path); });
    tell(path, Change::entryWent);
    return true;
}

std::optional<std::string> MemoryFileSystem::read(const fs::path& path) const
{
    const Node* node = find(path);
    return node && !node->folder ? std::optional(node->bytes) : std::nullopt;
}

bool MemoryFileSystem::writeAtomically(const fs::path& path, std::string_view bytes)
{
    if (!writable(path) || isDirectory(path) || !isDirectory(path.parent_path()))
        return false;
    create(path, std::string(bytes));
    return true;
}

std::optional<fs::path> MemoryFileSystem::makeTemporaryFolder()
{
    const fs::path folder = fs::path("/tmp") / ("folder-" + std::to_string(++lastTemporaryFolder));
    return createFolders(folder) ? std::optional(folder) : std::nullopt;
}

void MemoryFileSystem::create(const fs::path& path, std::string bytes)
{
    beginWriting(path, {});
    finishWriting(path, std::move(bytes));
}

void MemoryFileSystem::beginWriting(const fs::path& path, std::string bytes)
{
    Node& node = put(path, false);
    node.bytes = std::move(bytes);
    node.modified = clock.wallNow();
}

void MemoryFileSystem::finishWriting(const fs::path& path, std::string bytes)
{
    beginWriting(path, std::move(bytes));
    tell(path, Change::fileCompleted);
}

void MemoryFileSystem::rename(const fs::path& from, const fs::path& to)
{
    std::map<fs::path, Node> moved;
    for (const auto& [path, node] : nodes) {
        if (isWithin(path, from))
            moved.emplace(path == from ? to : to / path.lexically_relative(from), node);
    }
    std::erase_if(nodes, [&](const auto& entry) {
        return isWithin(entry.first, from) || isWithin(entry.first, to);
    });
    nodes.insert(moved.begin(), moved.end());
    tell(from, Change::entryWent);
    tell(to, Change::entryCame);
    for (const auto& [path, node] : moved) {
        if (!node.folder)
            tell(path, Change::fileCompleted);
    }
}

void MemoryFileSystem::link(const fs::path& file, const fs::path& furtherName)
{
    nodes.insert_or_assign(furtherName, nodes.at(file));
    tell(furtherName, Change::entryCame);
    tell(furtherName, Change::fileCompleted);
}

void MemoryFileSystem::setCreationDate(const fs::path& path, std::optional<WallTime> date)
{
    nodes.at(path).created = date;
}

void MemoryFileSystem::setModificationDate(const fs::path& path, WallTime date)
{
    nodes.at(path).modified = date;
}

bool MemoryFileSystem::hasChangedWithin(std::chrono::milliseconds time, const fs::path& path) const
{
    const Node& node = nodes.at(path);
    return std::max(node.modified, node.created.value_or(node.modified)) >= clock.wallNow() - time;
}

Subscription MemoryFileSystem::listen(Listener listener)
{
    const int id = ++lastListener;
    listeners.emplace(id, std::make_shared<Listener>(std::move(listener)));
    return Subscription([this, id] { listeners.erase(id); });
}

bool MemoryFileEvents::isWatched(const Watch& watch, const fs::path& file)
{
    return watch.depth == Depth::folderAlone ? file.parent_path() == watch.folder
                                             : isWithin(file, watch.folder);
}

void MemoryFileEvents::report(const std::weak_ptr<Stream>& stream, const fs::path& path)
{
    dispatch.mainAsync([stream, path] {
        if (const auto alive = stream.lock())
            alive->handlers.files({path});
    });
}

void MemoryFileEvents::reportRecent(const std::shared_ptr<Stream>& stream, const fs::path& folder)
{
    for (const fs::path& entry : files.list(folder).value_or(std::vector<fs::path>{})) {
        if (!files.isDirectory(entry)) {
            if (files.hasChangedWithin(stream->lookBack, entry))
                report(stream, entry);
        } else if (stream->depth == Depth::withSubfolders)
            reportRecent(stream, entry);
    }
}

std::optional<Subscription> MemoryFileEvents::start(const Watch& watch, Handlers handlers)
{
    if (startsToFail > 0) {
        --startsToFail;
        return std::nullopt;
    }
    const int id = ++lastStream;
    auto stream = std::make_shared<Stream>(Stream{watch, std::move(handlers)});
    auto listening = files.listen(
        [this, weak = std::weak_ptr(stream), watch](const fs::path& path, auto change) {
            if (change == MemoryFileSystem::Change::fileCompleted && isWatched(watch, path))
                report(weak, path);
        });
    if (watch.lookBack > std::chrono::milliseconds(0))
        reportRecent(stream, watch.folder);
    streams.emplace(id, std::move(stream));
    return Subscription(
        [this, id, listening = std::make_shared<Subscription>(std::move(listening))] {
            listening->reset();
            streams.erase(id);
        });
}

void MemoryFileEvents::emit(const fs::path& path)
{
    for (const auto& [id, stream] : streams) {
        if (isWatched(*stream, path))
            report(stream, path);
    }
}

void MemoryFileEvents::setCoverage(Coverage coverage)
{
    const auto all = streams;
    for (const auto& [id, stream] : all)
        stream->handlers.coverage(coverage);
}

std::optional<Subscription> MemoryFolderEvents::start(const fs::path& folder, Handler handler)
{
    if (!files.isDirectory(folder))
        return std::nullopt;
    ++running;
    auto shared = std::make_shared<Handler>(std::move(handler));
    auto listening = files.listen(
        [this, weak = std::weak_ptr(shared), folder](const fs::path& path, auto change) {
            if (change == MemoryFileSystem::Change::fileCompleted
                || (path.parent_path() != folder && path != folder))
                return;
            dispatch.mainAsync([weak] {
                if (const auto alive = weak.lock())
                    (*alive)();
            });
        });
    return Subscription(
        [this, shared, listening = std::make_shared<Subscription>(std::move(listening))]() mutable {
            listening->reset();
            shared.reset();
            --running;
        });
}

} // namespace tallowbay::headless
