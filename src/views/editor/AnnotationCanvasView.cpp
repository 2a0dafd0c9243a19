#include "views/editor/AnnotationCanvasView.h"

#include "platform/qt/graphics/QtGraphicsContext.h"
#include "views/editor/InlineTextEdit.h"
#include "views/editor/KeyEvents.h"
#include "views/ui/RoundedPath.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

namespace tallowbay::views {

namespace {

Qt::CursorShape qtCursor(CanvasCursor cursor)
{
    switch (cursor) {
    case CanvasCursor::crosshair:
        return Qt::CrossCursor;
    case CanvasCursor::openHand:
        return Qt::OpenHandCursor;
    case CanvasCursor::closedHand:
        return Qt::ClosedHandCursor;
    case CanvasCursor::resizeUpDown:
        break;
    }
    return Qt::SizeVerCursor;
}

class ShownTextField final : public InlineTextField {
public:
    explicit ShownTextField(InlineTextEdit* edit)
        : edit(edit)
    {
    }
    ~ShownTextField() override
    {
        if (!edit)
            return;
        // It may be the sender of the key press that is being handled.
        edit->hide();
        edit->deleteLater();
    }
    std::string text() const override { return edit ? edit->text().toStdString() : std::string(); }
    void setFrame(const Rect& frame) override
    {
        if (edit)
            edit->setFrame(frame);
    }

private:
    QPointer<InlineTextEdit> edit; // its parent may have taken it along
};

} // namespace

AnnotationCanvasView::AnnotationCanvasView(
    AnnotationCanvas& logic, const qt::GraphicsFonts& fonts, QWidget* parent)
    : QWidget(parent)
    , logic(logic)
    , fonts(fonts)
{
    setObjectName(QStringLiteral("canvas"));
    setAccessibleName(QStringLiteral("Screenshot"));
    setAccessibleDescription(QStringLiteral("Drag to mark it up with the selected tool"));
    setMouseTracking(true);
    setFocusPolicy(Qt::ClickFocus);
}

void AnnotationCanvasView::setCursor(CanvasCursor cursor)
{
    QWidget::setCursor(qtCursor(cursor));
}

std::unique_ptr<InlineTextField> AnnotationCanvasView::showTextField(const TextFieldLook& look)
{
    auto* const edit = new InlineTextEdit(look, fonts, this);
    edit->committed = [this] { logic.textFieldCommitted(); };
    edit->show();
    edit->setFocus();
    return std::make_unique<ShownTextField>(edit);
}

void AnnotationCanvasView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (lowerCornerRadius > 0) {
        painter.setRenderHint(QPainter::Antialiasing); // the clip's edge, too
        painter.setClipPath(cardBottomPath(rect(), lowerCornerRadius));
    }
    qt::QtGraphicsContext context(painter, height(), fonts, scaledImages);
    logic.draw(context);
}

void AnnotationCanvasView::resizeEvent(QResizeEvent*)
{
    logic.setSize({static_cast<double>(width()), static_cast<double>(height())});
}

void AnnotationCanvasView::hideEvent(QHideEvent*)
{
    logic.gestureLost();
}

// Every button takes the keyboard.
void AnnotationCanvasView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        logic.mouseDown(canvasPoint(*event));
    else
        logic.commitTextIfNeeded();
}

void AnnotationCanvasView::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        logic.mouseDragged(canvasPoint(*event));
    else if (event->buttons() == Qt::NoButton && isActiveWindow())
        logic.mouseMoved(canvasPoint(*event));
}

void AnnotationCanvasView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        logic.mouseUp(canvasPoint(*event));
}

void AnnotationCanvasView::keyPressEvent(QKeyEvent* event)
{
    logic.keyDown(keyPressOf(*event));
}

Point AnnotationCanvasView::canvasPoint(const QMouseEvent& event) const
{
    const QPointF position = event.position();
    return {position.x(), height() - position.y()};
}

} // namespace tallowbay::views
