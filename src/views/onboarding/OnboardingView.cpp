#include "views/onboarding/OnboardingView.h"

#include "platform/WindowSystem.h"
#include "platform/qt/Artwork.h"
#include "platform/qt/graphics/GraphicsFonts.h"

#include <QCloseEvent>
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
#onboardingWindow { background: #1f2024; }
QLabel { color: white; }
QLabel#description { color: #95969c; }
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
QPixmap badge(const OnboardingWindow::Step& step, int number, double scale)
{
    QPixmap pixmap(QSize(badgeSize, badgeSize) * scale);
    pixmap.setDevicePixelRatio(scale);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(step.done ? green : grey);
    painter.drawEllipse(0, 0, badgeSize, badgeSize);
    if (step.done) {
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

QLabel* makePicture(const QPixmap& pixmap, const QString& name)
{
    auto* label = new QLabel;
    label->setPixmap(pixmap);
    label->setAccessibleName(name);
    label->setFixedSize(pixmap.deviceIndependentSize().toSize());
    return label;
}

QLayout* makeRow(const OnboardingWindow::Step& step, int number, double scale)
{
    auto* title = makeLabel(
        QString::fromStdString(step.title), QStringLiteral("title"), {14, FontWeight::semibold});
    auto* description = makeLabel(
        QString::fromStdString(step.description), QStringLiteral("description"),
        {12, FontWeight::regular});
    auto* texts = new QVBoxLayout;
    texts->setSpacing(3);
    for (QLabel* label : {title, description}) {
        label->setFixedWidth(textWidth);
        texts->addWidget(label);
    }
    const QString state = step.done ? QStringLiteral("Done") : QStringLiteral("Not done");
    auto* row = new QHBoxLayout;
    row->setSpacing(18);
    row->addWidget(makePicture(badge(step, number, scale), state), 0, Qt::AlignVCenter);
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

OnboardingView::OnboardingView(OnboardingWindow& logic, WindowSystem& windows)
    : logic(logic)
    , windows(windows)
{
    setObjectName(QStringLiteral("onboardingWindow"));
    setWindowTitle(QStringLiteral("Tallowbay"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(look);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(36, 32, 36, 28);
    rows->setSpacing(16);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    addHeader(*rows);
    addSteps(*rows);
    addButton(*rows);
}

void OnboardingView::addHeader(QVBoxLayout& rows)
{
    const QIcon icon = qt::Artwork().icon(QStringLiteral("com.quarnel.tallowbay"));
    auto* header = new QHBoxLayout;
    header->setSpacing(18);
    header->addWidget(makePicture(
        icon.pixmap(QSize(iconSize, iconSize), devicePixelRatioF()), QStringLiteral("Tallowbay")));
    header->addWidget(
        makeLabel(
            QString::fromStdString(logic.heading()), QStringLiteral("heading"),
            {22, FontWeight::semibold}),
        1);
    rows.addLayout(header);
    rows.addSpacing(8);
}

void OnboardingView::addSteps(QVBoxLayout& rows)
{
    int number = 0;
    for (const auto& step : logic.steps()) {
        rows.addLayout(makeRow(step, ++number, devicePixelRatioF()));
        rows.addWidget(makeLine());
    }
}

void OnboardingView::addButton(QVBoxLayout& rows)
{
    auto* button = new QPushButton(QString::fromStdString(logic.buttonTitle()));
    button->setFont(qt::interfaceFont({14, FontWeight::medium}));
    button->setFixedSize(112, 36);
    button->setCursor(Qt::PointingHandCursor);
    button->setAutoDefault(true);
    button->setFocus();
    // Its own turn of the main loop: the logic may destroy this window.
    connect(
        button, &QPushButton::clicked, this, [this] { logic.startTapped(); }, Qt::QueuedConnection);
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(button);
    rows.addSpacing(4);
    rows.addLayout(row);
}

void OnboardingView::makeKeyAndOrderFront()
{
    if (!isVisible())
        center();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    windows.activate(winId()); // which the desktop may refuse the toolkit
}

void OnboardingView::center()
{
    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

void OnboardingView::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    logic.windowClosed();
}

} // namespace tallowbay::views
