#include "tools/canvas/CanvasTool.h"

#include "editor/AnnotationConstants.h"
#include "editor/CanvasRenderer.h"
#include "tools/canvas/CanvasWindow.h"
#include "tools/canvas/ItemsFile.h"

#include <QApplication>

#include <cmath>

namespace tallowbay {

namespace fs = std::filesystem;

namespace {

const char* reason(ImageError error)
{
    switch (error) {
    case ImageError::unreadable:
        return "cannot be read";
    case ImageError::unknownFormat:
        return "is neither PNG nor JPEG";
    case ImageError::tooLarge:
        return "is too large";
    case ImageError::damaged:
        break;
    }
    return "is damaged";
}

} // namespace

CanvasTool::CanvasTool()
    : resources(posix::runningProgramFolder(), [](const std::string&) { return false; })
    , compressor(files, processes, resources, posix::linuxToolPaths(resources))
    , exporter(files, codec, graphics, compressor)
{
}

std::vector<AnnotationItem> CanvasTool::readItems(const fs::path& path) const
{
    const auto json = files.read(fs::absolute(path));
    if (!json)
        throw CanvasToolProblem(path.string() + " cannot be read");
    auto items = parseItems(*json);
    if (const auto* problem = std::get_if<ItemsProblem>(&items))
        throw CanvasToolProblem(path.string() + ": " + problem->sentence);
    return std::get<std::vector<AnnotationItem>>(std::move(items));
}

Image CanvasTool::readImage(const fs::path& path) const
{
    auto loaded = loadImage(files, codec, fs::absolute(path));
    if (const auto* error = std::get_if<ImageError>(&loaded))
        throw CanvasToolProblem(path.string() + " " + reason(*error));
    return std::make_shared<Bitmap>(std::get<Bitmap>(std::move(loaded)));
}

void CanvasTool::write(const std::optional<Bitmap>& bitmap, const fs::path& path) const
{
    if (!bitmap)
        throw CanvasToolProblem("a canvas of this size has no room for a picture");
    const auto bytes = exporter.encode(*bitmap, path);
    if (!bytes || !files.writeAtomically(fs::absolute(path), *bytes))
        throw CanvasToolProblem(path.string() + " cannot be written");
}

void CanvasTool::flatten(const CanvasJob& job) const
{
    write(
        exporter.flattenAnnotation(
            readImage(job.image), readItems(job.items), job.canvasSize, imageInset),
        job.output);
}

void CanvasTool::render(const CanvasJob& job, double scale) const
{
    CanvasState state;
    state.size = job.canvasSize;
    state.backgroundImage = readImage(job.image);
    state.annotations = readItems(job.items);
    const PixelSize pixels{
        static_cast<int>(std::ceil(job.canvasSize.width * scale)),
        static_cast<int>(std::ceil(job.canvasSize.height * scale))};
    write(
        graphics.draw(
            pixels, scale, [&](GraphicsContext& context) { drawCanvas(context, state, {}); }),
        job.output);
}

int CanvasTool::edit(const fs::path& path)
{
    const fs::path url = fs::absolute(path);
    AnnotationSaver saver(
        dispatch, AnnotationExporter(files, codec, graphics, compressor.into(url.parent_path())));
    CanvasWindow window(fonts, saver, url, readImage(path));
    window.resize(1000, 700);
    window.show();
    const int status = QApplication::exec();
    while (!saver.pathsBeingWritten().empty())
        QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    dispatch.finishBackgroundWork();
    return status;
}

} // namespace tallowbay
