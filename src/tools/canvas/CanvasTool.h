#pragma once

#include "editor/AnnotationItem.h"
#include "editor/saving/AnnotationExporter.h"
#include "platform/posix/LinuxResources.h"
#include "platform/posix/PosixProcesses.h"
#include "platform/posix/files/PosixFileSystem.h"
#include "platform/qt/QtDispatch.h"
#include "platform/qt/graphics/QtGraphicsContext.h"
#include "platform/qt/graphics/QtImageCodec.h"

#include <stdexcept>

namespace tallowbay {

// Says what went wrong, for people.
class CanvasToolProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// What the command line asks for beside the window.
struct CanvasJob {
    std::filesystem::path items;
    Size canvasSize;
    std::filesystem::path image;
    std::filesystem::path output;
};

// The development tool: the editor's own code behind a command line. Needs the application object.
// Every member throws CanvasToolProblem.
class CanvasTool {
public:
    CanvasTool();

    // Burns the items into a copy of the picture, in its own pixels.
    void flatten(const CanvasJob&) const;

    // Draws what a canvas of that size shows, this many pixels a point.
    void render(const CanvasJob&, double scale) const;

    // Shows a window; what is edited there replaces the file. Returns when it is closed and all is
    // saved.
    int edit(const std::filesystem::path&);

private:
    std::vector<AnnotationItem> readItems(const std::filesystem::path&) const;
    Image readImage(const std::filesystem::path&) const;
    void write(const std::optional<Bitmap>&, const std::filesystem::path&) const;

    qt::QtDispatch dispatch;
    mutable posix::PosixFileSystem files;
    posix::PosixProcesses processes;
    posix::LinuxResources resources;
    qt::QtImageCodec codec;
    qt::GraphicsFonts fonts;
    qt::QtOffscreenGraphics graphics{fonts};
    ImageCompressor compressor;
    AnnotationExporter exporter;
};

} // namespace tallowbay
