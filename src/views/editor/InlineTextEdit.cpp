#include "views/editor/InlineTextEdit.h"

#include "platform/qt/graphics/QtColor.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QValidator>

namespace tallowbay::views {

namespace {

QString inOneLine(QString text)
{
    static const QRegularExpression breaks(
        QStringLiteral("\\r\\n|[\\n\\r\\v\\f\\x{85}\\x{2028}\\x{2029}]"));
    return text.replace(breaks, QStringLiteral(" "));
}

// Whatever comes in, by key, paste, drop or input method, stays one line: a break becomes a blank.
class OneLine final : public QValidator {
public:
    using QValidator::QValidator;
    State validate(QString& text, int& cursor) const override
    {
        cursor = static_cast<int>(inOneLine(text.left(cursor)).size());
        text = inOneLine(text);
        return Acceptable;
    }
};

} // namespace

InlineTextEdit::InlineTextEdit(
    const TextFieldLook& look, const qt::GraphicsFonts& fonts, QWidget* parent)
    : QLineEdit(parent)
{
    setObjectName(QStringLiteral("annotationTextField"));
    setAccessibleName(QStringLiteral("Text on the screenshot"));
    QLineEdit::setFrame(false);
    setValidator(new OneLine(this));
    setAttribute(Qt::WA_MacShowFocusRect, false);
    setFont(fonts.scaled(look.font).font);
    setPlaceholderText(QString::fromStdString(look.placeholder));
    QPalette colors = palette();
    colors.setColor(QPalette::Base, qt::qtColor(look.background));
    colors.setColor(QPalette::Text, qt::qtColor(look.textColor));
    colors.setColor(QPalette::PlaceholderText, qt::qtColor(look.placeholderColor));
    setPalette(colors);
    setFrame(look.frame);
}

void InlineTextEdit::setFrame(const Rect& frame)
{
    const double top = parentWidget()->height() - frame.maxY();
    setGeometry(QRectF(frame.minX(), top, frame.size.width, frame.size.height).toRect());
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
