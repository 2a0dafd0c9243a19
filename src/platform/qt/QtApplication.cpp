#include "platform/qt/QtApplication.h"

#include <QApplication>
#include <QSessionManager>

namespace tallowbay::qt {

QtApplication::QtApplication()
    : endingSignals(std::in_place, [this] { terminate(); })
{
    QApplication::setQuitOnLastWindowClosed(false);
    qApp->installEventFilter(&quitFilter);
    // The session asks everyone to save first, and may then go on after all; only its "die", which
    // Qt turns into a quit, ends us. Starting with the next session is the autostart entry's part.
    QObject::connect(qApp, &QGuiApplication::commitDataRequest, qApp, [](QSessionManager& session) {
        session.setRestartHint(QSessionManager::RestartNever);
    });
}

// Not at once: the menu or dialog that asked for it is still on the stack.
void QtApplication::terminate()
{
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

bool QtApplication::QuitFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Quit || watched != qApp)
        return false;
    event->accept();
    application.terminate();
    return true;
}

int QtApplication::run()
{
    return QApplication::exec();
}

} // namespace tallowbay::qt
