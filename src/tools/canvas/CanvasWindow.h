#pragma once

#include "editor/AnnotationHistory.h"
#include "editor/saving/AnnotationSaver.h"
#include "views/editor/AnnotationCanvasView.h"

#include <QMainWindow>

namespace tallowbay {

// A plain window with one screenshot, for trying the canvas by hand: a tool bar, undo and redo, and
// every edit is saved. Escape closes it.
class CanvasWindow final : public QMainWindow,
                           private AnnotationCanvasHost,
                           private AnnotationCanvasDelegate {
public:
    CanvasWindow(const qt::GraphicsFonts&, AnnotationSaver&, std::filesystem::path url, Image);
    ~CanvasWindow() override;

private:
    void closeEvent(QCloseEvent*) override { canvas.commitTextIfNeeded(); }

    // The host
    std::unique_ptr<AnnotationCanvasPort> makeCanvasView(AnnotationCanvas&) override;

    // The delegate
    AnnotationTool selectedTool() const override { return tool; }
    Color highlightColor() const override { return color; }
    void canvasDidAddAnnotation(const std::vector<AnnotationItem>&) override;
    void annotationUpdated(std::size_t index, const std::vector<AnnotationItem>&) override;
    void annotationsChanged(const std::vector<AnnotationItem>&) override;
    void deleteAnnotation(std::size_t index) override;
    void handleKeyDown(const KeyPress&) override;

    void addToolBar();
    void undoAnnotation();
    void redoAnnotation();
    void saveIf(bool changed);

    AnnotationSaver& saver;
    ScreenshotRecord screenshot;
    AnnotationTool tool = AnnotationTool::highlight;
    Color color = systemYellow;
    const qt::GraphicsFonts& fonts;
    AnnotationCanvas canvas;
    AnnotationHistory history{canvas};
};

} // namespace tallowbay
