#pragma once

#include "editor/AnnotationCanvas.h"
#include "platform/qt/graphics/GraphicsFonts.h"

#include <QLineEdit>

namespace tallowbay::views {

// The line of text that is typed right on the screenshot. Input methods and dead keys work as in
// any other field.
class InlineTextEdit final : public QLineEdit {
public:
    InlineTextEdit(const TextFieldLook&, const qt::GraphicsFonts&, QWidget* parent);

    // In points of the canvas, which is the parent.
    void setFrame(const Rect&);

    // Return was pressed. May take the field away.
    std::function<void()> committed;

protected:
    void keyPressEvent(QKeyEvent*) override;
    bool focusNextPrevChild(bool) override { return false; } // Tab would leave it behind, open
};

} // namespace tallowbay::views
