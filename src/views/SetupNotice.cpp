#include "views/SetupNotice.h"

#include "platform/qt/Artwork.h"
#include "platform/qt/graphics/GraphicsFonts.h"

#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace tallowbay::views {

namespace {

constexpr int textWidth = 408;
constexpr int iconSize = 56;
constexpr int badgeSize = 30;

const QColor green(61, 199, 139);
const QColor grey(51, 52, 56);

const QString look = QStringLiteral(R"(
#setupNotice { background: #1f2024; }
QLabel { color: white; }
QLabel#explanation { color: #95969c; }
QFrame#line { background: #34353a; border: none; }
QPushButton {
    color: white; background: #6f68f2; border: none; border-radius: 8px;
}
QPushButton:hover { background: #7f79f7; }
QPushButton:pressed { background: #5a53d8; }
QPushButton:focus { border: 2px solid #b9b5ff; }
)");

void drawCheckMark(QPainter& painter)
{
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF{QPointF(10.5, 15.5), QPointF(13.7, 18.7), QPointF(19.8, 12)});
}

// A tick where all is well, else the number of the step.
QPixmap badge(bool passed, int number, double scale)
{
    QPixmap pixmap(QSize(badgeSize, badgeSize) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(passed ? green : grey);
    painter.drawEllipse(0, 0, badgeSize, badgeSize);
    if (passed) {
        drawCheckMark(painter);
        return pixmap;
    }
    painter.setPen(QColor(200, 200, 206));
    painter.setFont(qt::interfaceFont({13, FontWeight::semibold}));
    painter.drawText(QRect(0, 0, badgeSize, badgeSize), Qt::AlignCenter, QString::number(number));
    return pixmap;
}

QLabel* makeLabel(const QString& text, const QString& name, const Font& font)
{
    auto* label = new QLabel(text);
    label->setObjectName(name);
    label->setFont(qt::interfaceFont(font));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QLabel* makePicture(const QPixmap& pixmap)
{
    auto* label = new QLabel;
    label->setPixmap(pixmap);
    label->setFixedSize(pixmap.deviceIndependentSize().toSize());
    return label;
}

QLayout* makeRow(const SetupNotice::Check& check, int number, double scale)
{
    auto* title = makeLabel(
        QString::fromStdString(check.title), QStringLiteral("title"), {14, FontWeight::semibold});
    auto* explanation = makeLabel(
        QString::fromStdString(check.explanation), QStringLiteral("explanation"),
        {12, FontWeight::regular});
    auto* texts = new QVBoxLayout;
    texts->setSpacing(3);
    for (QLabel* label : {title, explanation}) {
        label->setFixedWidth(textWidth);
        texts->addWidget(label);
    }
    auto* row = new QHBoxLayout;
    row->setSpacing(18);
    row->addWidget(makePicture(badge(check.passed, number, scale)), 0, Qt::AlignVCenter);
    row->addLayout(texts, 1);
    return row;
}

QFrame* makeLine()
{
    auto* line = new QFrame;
    line->setObjectName(QStringLiteral("line"));
    line->setFixedHeight(1);
    return line;
}

} // namespace

SetupNotice::SetupNotice(const std::vector<Check>& checks, std::function<void()> started)
{
    setObjectName(QStringLiteral("setupNotice"));
    setWindowTitle(QStringLiteral("Tallowbay"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(look);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(36, 32, 36, 28);
    rows->setSpacing(16);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    addHeader(*rows);
    addChecks(*rows, checks);
    addButton(*rows, std::move(started));
}

void SetupNotice::addHeader(QVBoxLayout& rows)
{
    const QIcon icon = qt::Artwork().icon(QStringLiteral("com.quarnel.tallowbay"));
    auto* header = new QHBoxLayout;
    header->setSpacing(18);
    header->addWidget(makePicture(icon.pixmap(QSize(iconSize, iconSize), devicePixelRatioF())));
    header->addWidget(
        makeLabel(
            QStringLiteral("Get Tallowbay ready"), QStringLiteral("heading"),
            {22, FontWeight::semibold}),
        1);
    rows.addLayout(header);
    rows.addSpacing(8);
}

void SetupNotice::addChecks(QVBoxLayout& rows, const std::vector<Check>& checks)
{
    int number = 0;
    for (const Check& check : checks) {
        rows.addLayout(makeRow(check, ++number, devicePixelRatioF()));
        rows.addWidget(makeLine());
    }
}

void SetupNotice::addButton(QVBoxLayout& rows, std::function<void()> started)
{
    auto* button = new QPushButton(QStringLiteral("Start"));
    button->setFont(qt::interfaceFont({14, FontWeight::medium}));
    button->setFixedSize(112, 36);
    button->setCursor(Qt::PointingHandCursor);
    button->setAutoDefault(true);
    button->setFocus();
    // Its own turn of the main loop: the callback may destroy this window.
    connect(button, &QPushButton::clicked, this, std::move(started), Qt::QueuedConnection);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(button);
    rows.addSpacing(4);
    rows.addLayout(row);
}

void SetupNotice::present()
{
    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    show();
    raise();
    activateWindow();
}

} // namespace tallowbay::views
