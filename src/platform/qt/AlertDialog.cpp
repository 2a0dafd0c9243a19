#include "platform/qt/AlertDialog.h"

#include "platform/qt/Artwork.h"
#include "platform/qt/graphics/GraphicsFonts.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace tallowbay::qt {

namespace {

constexpr int iconSize = 64;
constexpr int textWidth = 340;
constexpr QColor amber(255, 184, 28);

void drawWarningBadge(QPainter& painter, const QRectF& square)
{
    QPainterPath triangle;
    triangle.moveTo(square.center().x(), square.top() + 2);
    triangle.lineTo(square.right() - 1, square.bottom() - 3);
    triangle.lineTo(square.left() + 1, square.bottom() - 3);
    triangle.closeSubpath();
    painter.setBrush(amber);
    painter.setPen(QPen(amber, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(triangle);
    const double middle = square.center().x();
    painter.setPen(QPen(QColor(60, 40, 0), 2.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(middle, square.top() + 10), QPointF(middle, square.top() + 16));
    painter.drawPoint(QPointF(middle, square.top() + 21));
}

QPixmap iconFor(AlertDialog::Kind kind, double scale)
{
    const QSize size(iconSize, iconSize);
    QPixmap icon = Artwork().icon(QStringLiteral("com.quarnel.tallowbay")).pixmap(size, scale);
    if (kind == AlertDialog::Kind::warning) {
        QPainter painter(&icon);
        painter.setRenderHint(QPainter::Antialiasing);
        drawWarningBadge(painter, {iconSize - 30.0, iconSize - 29.0, 28, 28});
    }
    return icon;
}

QLabel* makeLabel(const std::string& text, const QString& name, const QFont& font)
{
    auto* label = new QLabel(QString::fromStdString(text));
    label->setObjectName(name);
    label->setFont(font);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    return label;
}

} // namespace

AlertDialog::AlertDialog(Kind kind, const Alert& alert)
    : QDialog(nullptr, Qt::Dialog | Qt::WindowStaysOnTopHint)
    , pressed(alert.buttons.empty() ? 0 : alert.buttons.size() - 1)
{
    setObjectName(QStringLiteral("alert"));
    setWindowTitle(QGuiApplication::applicationDisplayName());
    auto* icon = new QLabel;
    icon->setPixmap(iconFor(kind, devicePixelRatioF()));
    icon->setAlignment(Qt::AlignTop);

    auto* columns = new QHBoxLayout;
    columns->setSpacing(20);
    columns->addWidget(icon);
    columns->addWidget(makeText(alert));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(24, 24, 24, 20);
    rows->setSpacing(24);
    rows->addLayout(columns);
    rows->addWidget(makeButtons(alert.buttons));
    rows->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* AlertDialog::makeText(const Alert& alert)
{
    auto* text = new QWidget;
    auto* rows = new QVBoxLayout(text);
    rows->setContentsMargins(0, 2, 0, 0);
    rows->setSpacing(8);
    rows->addWidget(makeLabel(
        alert.message, QStringLiteral("message"), interfaceFont({15, FontWeight::semibold})));
    rows->addWidget(makeLabel(
        alert.informativeText, QStringLiteral("informativeText"),
        interfaceFont({13, FontWeight::regular})));
    rows->addStretch();
    return text;
}

QWidget* AlertDialog::makeButtons(const std::vector<std::string>& titles)
{
    auto* row = new QWidget;
    auto* buttons = new QHBoxLayout(row);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setDirection(QBoxLayout::RightToLeft);
    buttons->setSpacing(10);
    for (std::size_t index = 0; index < titles.size(); ++index) {
        auto* button = new QPushButton(QString::fromStdString(titles[index]));
        button->setFont(interfaceFont({13, FontWeight::regular}));
        button->setMinimumSize(std::max(88, button->sizeHint().width() + 20), 30);
        button->setDefault(index == 0);
        connect(button, &QPushButton::clicked, this, [this, index] {
            pressed = index;
            accept();
        });
        buttons->addWidget(button);
    }
    buttons->addStretch();
    return row;
}

void AlertDialog::present()
{
    show();
    raise();
    activateWindow();
}

} // namespace tallowbay::qt
