#include "views/InlineTextEdit.h"

#include "platform/qt/graphics/QtColor.h"

#include <QKeyEvent>

namespace tallowbay::views {

namespace {

constexpr float placeholderAlpha = 0.5F;

} // namespace

InlineTextEdit::InlineTextEdit(
    const TextFieldLook& look, const qt::GraphicsFonts& fonts, QWidget* parent)
    : QLineEdit(parent)
{
    setObjectName(QStringLiteral("annotationTextField"));
    setFrame(false);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    setFont(fonts.scaled(look.font).font);
    setPlaceholderText(QString::fromStdString(look.placeholder));
    QPalette colors = palette();
    const QColor text = qt::qtColor(look.textColor);
    QColor faint = text;
    faint.setAlphaF(placeholderAlpha);
    colors.setColor(QPalette::Base, qt::qtColor(look.background));
    colors.setColor(QPalette::Text, text);
    colors.setColor(QPalette::PlaceholderText, faint);
    setPalette(colors);
}

void InlineTextEdit::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        const auto handler = committed; // it may outlive this field
        handler();
        return;
    }
    QLineEdit::keyPressEvent(event);
    // What the field has no use for is not meant for the editor either, but for the way out.
    if (event->key() != Qt::Key_Escape)
        event->accept();
}

} // namespace tallowbay::views
