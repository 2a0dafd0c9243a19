#include "tools/canvas/CanvasWindow.h"

#include "editor/AnnotationConstants.h"
#include "platform/qt/graphics/QtColor.h"

#include <QActionGroup>
#include <QPixmap>
#include <QToolBar>

namespace tallowbay {

namespace {

QIcon swatch(const Color& color)
{
    constexpr int side = 20;
    QPixmap pixmap(side, side);
    pixmap.fill(qt::qtColor(color));
    return pixmap;
}

QString qtText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

CanvasWindow::CanvasWindow(
    const qt::GraphicsFonts& fonts, AnnotationSaver& saver, std::filesystem::path url, Image image)
    : saver(saver)
    , screenshot{std::move(url), {}, {}, {}}
    , fonts(fonts)
    , canvas(*this, fonts)
{
    setWindowTitle(QStringLiteral("tallowbay-canvas"));
    addToolBar();
    canvas.setDelegate(this);
    canvas.setBackgroundImage(std::move(image));
    centralWidget()->setFocus();
}

CanvasWindow::~CanvasWindow()
{
    canvas.setDelegate(nullptr);
}

std::unique_ptr<AnnotationCanvasPort> CanvasWindow::makeCanvasView(AnnotationCanvas& logic)
{
    auto view = std::make_unique<views::AnnotationCanvasView>(logic, fonts, this);
    setCentralWidget(view.get());
    return view;
}

void CanvasWindow::addToolBar()
{
    auto* const bar = QMainWindow::addToolBar(QString());
    bar->setMovable(false);
    auto* const tools = new QActionGroup(this);
    for (const AnnotationTool each : annotationTools) {
        auto* const action = bar->addAction(qtText(railLabel(each)), [this, each] {
            canvas.commitTextIfNeeded();
            tool = each;
        });
        action->setCheckable(true);
        action->setChecked(each == tool);
        tools->addAction(action);
    }
    bar->addAction(QStringLiteral("Undo"), [this] { undoAnnotation(); });
    bar->addAction(QStringLiteral("Redo"), [this] { redoAnnotation(); });
    for (const Color& each : swatchColorValues)
        bar->addAction(swatch(each), QString(), [this, each] { color = each; });
}

void CanvasWindow::canvasDidAddAnnotation(const std::vector<AnnotationItem>& items)
{
    history.canvasDidAddAnnotation(screenshot, items);
    saveIf(true);
}

void CanvasWindow::annotationUpdated(std::size_t, const std::vector<AnnotationItem>& items)
{
    history.annotationsChanged(screenshot, items);
    saveIf(true);
}

void CanvasWindow::annotationsChanged(const std::vector<AnnotationItem>& items)
{
    history.annotationsChanged(screenshot, items);
}

void CanvasWindow::deleteAnnotation(std::size_t index)
{
    saveIf(history.deleteAnnotation(screenshot, index));
}

void CanvasWindow::handleKeyDown(const KeyPress& key)
{
    if (key.keyCode == keyCode::returnKey || key.keyCode == keyCode::escape)
        canvas.commitTextIfNeeded();
    if (key.keyCode == keyCode::escape)
        close();
    if (key.keyCode == keyCode::z && key.flags & eventFlag::command)
        key.flags& eventFlag::shift ? redoAnnotation() : undoAnnotation();
}

void CanvasWindow::undoAnnotation()
{
    saveIf(history.undoAnnotation(screenshot));
}

void CanvasWindow::redoAnnotation()
{
    saveIf(history.redoAnnotation(screenshot));
}

void CanvasWindow::saveIf(bool changed)
{
    if (changed)
        saver.save(
            {screenshot.url, screenshot.annotations, canvas.backgroundImage(),
             screenshot.canvasSize});
}

} // namespace tallowbay
