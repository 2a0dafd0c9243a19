#include "editor/saving/AnnotationSaver.h"

#include "editor/AnnotationConstants.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace tallowbay {

// The saves of one file that have not ended. At most one job works on them: between the end of a
// tool and the moment that its result is in the file, no other save of this file can come in.
class AnnotationSaver::FileSaves {
public:
    // Main queue. True if a job is to be started.
    bool add(EditedScreenshot edited)
    {
        const std::lock_guard lock(mutex);
        waiting.push_back(std::move(edited));
        return !std::exchange(hasJob, true);
    }

    // Any thread.
    bool hasEnded()
    {
        const std::lock_guard lock(mutex);
        return !hasJob;
    }

    // Main queue, once it has ended: whether the file shows what was asked for last.
    bool hasSucceeded() const { return showsLatest; }

    // The job: writes until nothing waits.
    void write(const AnnotationExporter& exporter)
    {
        std::optional<Result> newest;
        for (auto saves = takeWaiting(); !saves.empty(); saves = takeWaiting()) {
            showsLatest = false;
            if (auto result = newestOf(saves, exporter))
                newest = std::move(result);
            else if (newest)
                newest->isLatest = false;
            if (!newest || isOvertaken())
                continue;
            showsLatest = isWritten(*newest, exporter) && newest->isLatest;
            newest.reset();
        }
    }

private:
    struct Result {
        std::filesystem::path url;
        std::string bytes;
        bool isLatest = true; // no newer save has failed
    };

    // In the order they were asked for. Empty: the job is over.
    std::vector<EditedScreenshot> takeWaiting()
    {
        const std::lock_guard lock(mutex);
        hasJob = !waiting.empty();
        return std::exchange(waiting, {});
    }

    bool isOvertaken()
    {
        const std::lock_guard lock(mutex);
        return !waiting.empty();
    }

    // Of the newest save that does not fail.
    static std::optional<Result> newestOf(
        const std::vector<EditedScreenshot>& saves, const AnnotationExporter& exporter)
    {
        for (auto edited = saves.rbegin(); edited != saves.rend(); ++edited)
            if (auto bytes = bytesOf(*edited, exporter))
                return Result{edited->url, std::move(*bytes), edited == saves.rbegin()};
        return std::nullopt;
    }

    // A picture for which there is not enough memory is a save that fails, and not the end of the
    // program.
    static std::optional<std::string> bytesOf(
        const EditedScreenshot& edited, const AnnotationExporter& exporter)
    try {
        const auto flattened =
            exporter.flattenAnnotation(edited.picture, edited.items, edited.canvasSize, imageInset);
        return flattened ? exporter.compressed(*flattened, edited.url) : std::nullopt;
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }

    static bool isWritten(const Result& result, const AnnotationExporter& exporter)
    try {
        return exporter.writeFlattenedImage(result.bytes, result.url);
    } catch (const std::bad_alloc&) {
        return false;
    }

    std::mutex mutex;
    std::vector<EditedScreenshot> waiting;
    bool hasJob = false;
    bool showsLatest = false; // the job's, until it ends
};

AnnotationSaver::AnnotationSaver(Dispatch& dispatch, AnnotationExporter exporter)
    : dispatch(dispatch)
    , exporter(std::move(exporter))
{
}

AnnotationSaver::~AnnotationSaver() = default;

void AnnotationSaver::save(EditedScreenshot edited)
{
    if (!edited.picture || edited.items.empty())
        return;
    const std::filesystem::path url = edited.url;
    auto& saves = writing[url];
    if (!saves)
        saves = std::make_shared<FileSaves>();
    if (!saves->add(std::move(edited)))
        return;
    auto finished = lifetime.guard([this, url] { finish(url); });
    dispatch.globalAsync(
        QualityOfService::userInitiated, [&queue = dispatch, exporter = exporter, saves, finished] {
            saves->write(exporter);
            queue.mainAsync(finished);
        });
}

void AnnotationSaver::finish(const std::filesystem::path& url)
{
    const auto saves = writing.find(url);
    // A job that was started meanwhile will report for itself.
    if (saves == writing.end() || !saves->second->hasEnded())
        return;
    const bool succeeded = saves->second->hasSucceeded();
    writing.erase(saves);
    const auto tell = onWritten;
    if (tell)
        tell(url, succeeded);
}

bool AnnotationSaver::finishWriting(std::chrono::milliseconds limit)
{
    return dispatch.waitForBackground(
        [this] {
            return std::ranges::all_of(
                writing, [](const auto& saves) { return saves.second->hasEnded(); });
        },
        limit);
}

std::set<std::filesystem::path> AnnotationSaver::pathsBeingWritten() const
{
    std::set<std::filesystem::path> paths;
    for (const auto& [path, saves] : writing)
        paths.insert(path);
    return paths;
}

} // namespace tallowbay
