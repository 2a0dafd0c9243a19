#include "platform/qt/QtAlerts.h"

#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

#include <memory>

namespace tallowbay::qt {

namespace {

QMessageBox* makeDialog(const Alert& alert)
{
    auto* dialog = new QMessageBox(
        QMessageBox::Warning, QGuiApplication::applicationDisplayName(),
        QString::fromStdString(alert.message));
    dialog->setObjectName(QStringLiteral("alert"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setInformativeText(QString::fromStdString(alert.informativeText));
    dialog->setTextFormat(Qt::PlainText);
    dialog->setWindowFlag(Qt::WindowStaysOnTopHint);
    dialog->setWindowModality(Qt::NonModal);
    return dialog;
}

// In a column of roles, so that the desktop's own order of buttons keeps the first as the one to
// choose and the last as the one to leave by.
QMessageBox::ButtonRole roleOf(std::size_t index, std::size_t count)
{
    if (index == 0)
        return QMessageBox::AcceptRole;
    return index + 1 == count ? QMessageBox::RejectRole : QMessageBox::ActionRole;
}

std::vector<QAbstractButton*> addButtons(
    QMessageBox& dialog, const std::vector<std::string>& titles)
{
    std::vector<QAbstractButton*> buttons;
    for (std::size_t index = 0; index < titles.size(); ++index)
        buttons.push_back(
            dialog.addButton(QString::fromStdString(titles[index]), roleOf(index, titles.size())));
    if (!buttons.empty()) {
        dialog.setDefaultButton(static_cast<QPushButton*>(buttons.front()));
        dialog.setEscapeButton(buttons.back());
    }
    return buttons;
}

std::size_t indexOf(const std::vector<QAbstractButton*>& buttons, const QAbstractButton* pressed)
{
    const auto found = std::find(buttons.begin(), buttons.end(), pressed);
    const bool closedOtherwise = found == buttons.end();
    return static_cast<std::size_t>(found - buttons.begin()) - (closedOtherwise ? 1 : 0);
}

} // namespace

Subscription QtAlerts::showWarning(const Alert& alert, Answer answer)
{
    const QPointer<QMessageBox> dialog = makeDialog(alert);
    const auto buttons = addButtons(*dialog, alert.buttons);
    QObject::connect(
        dialog, &QMessageBox::finished, dialog, [dialog, buttons, answer = std::move(answer)] {
            const Answer answering = answer; // it may end the token, and with it this lambda
            answering(indexOf(buttons, dialog->clickedButton()));
        });
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return Subscription([dialog] {
        if (!dialog)
            return;
        dialog->disconnect();
        dialog->close();
    });
}

} // namespace tallowbay::qt
