#include "platform/qt/QtAlerts.h"

#include "platform/qt/AlertDialog.h"

#include <QPointer>

namespace tallowbay::qt {

Subscription QtAlerts::showWarning(const Alert& alert, Answer answer)
{
    const QPointer<AlertDialog> dialog = new AlertDialog(AlertDialog::Kind::warning, alert);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::finished, dialog, [dialog, answer = std::move(answer)] {
        answer(dialog->answer());
    });
    dialog->present();
    return Subscription([dialog] {
        if (!dialog)
            return;
        dialog->disconnect();
        dialog->close();
    });
}

} // namespace tallowbay::qt
