#include "platform/contract/AlertsContract.h"
#include "platform/contract/ApplicationContract.h"
#include "platform/contract/ScreensContract.h"
#include "platform/qt/QtAlerts.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtDispatch.h"
#include "platform/qt/QtScreens.h"
#include "support/OffscreenProgram.h"

#include <QCloseEvent>
#include <QDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <optional>

namespace tallowbay::qt {

namespace {

using namespace std::chrono_literals;
using test::OffscreenProgram;

class QtAlertsBackend {
public:
    Alerts& alerts() { return shown; }
    std::size_t openCount() { return openDialogs().size(); }
    void press(std::size_t button)
    {
        const auto buttons = openDialogs().back()->findChildren<QPushButton*>();
        buttons.at(static_cast<qsizetype>(button))->click();
    }
    void closeWindow() { openDialogs().back()->close(); }
    void settle() { OffscreenProgram::settle(); }

private:
    // In the order in which they were shown, as Qt lists windows.
    static std::vector<QDialog*> openDialogs()
    {
        std::vector<QDialog*> dialogs;
        for (const QWindow* window : QGuiApplication::topLevelWindows())
            for (QWidget* widget : QApplication::topLevelWidgets())
                if (widget->windowHandle() == window && widget->isVisible())
                    if (auto* dialog = qobject_cast<QDialog*>(widget))
                        dialogs.push_back(dialog);
        return dialogs;
    }

    OffscreenProgram program;
    QtAlerts shown;
};

class QtApplicationBackend {
public:
    Application& application() { return running; }
    Dispatch& dispatch() { return queues; }
    bool run(const std::function<void()>& shutdown)
    {
        QTimer::singleShot(20s, qApp, [] { QCoreApplication::exit(99); });
        const int status = running.run();
        shutdown();
        OffscreenProgram::settle();
        return status == 0;
    }

private:
    OffscreenProgram program;
    QtDispatch queues;
    QtApplication running;
};

class QtScreensBackend {
public:
    const Screens& screensIn(contract::ScreenArrangement arrangement)
    {
        program.emplace("offscreen:configfile=" + writeConfiguration(arrangement));
        return screens;
    }
    // Of the pixel whose lower left corner that is.
    void moveMouseTo(Point place)
    {
        const QRect main = QGuiApplication::primaryScreen()->geometry();
        QCursor::setPos(
            main.left() + static_cast<int>(place.x), main.bottom() - static_cast<int>(place.y));
    }

private:
    static QByteArray screensOf(contract::ScreenArrangement arrangement)
    {
        const QByteArray size = R"("width": 1000, "height": 600})";
        switch (arrangement) {
        case contract::ScreenArrangement::mainAlone:
            return R"({"name": "main", "x": 0, "y": 0, )" + size;
        case contract::ScreenArrangement::mainRightOfAndBelowAnother:
            return R"({"name": "main", "x": 300, "y": 200, )" + size
                + R"(, {"name": "other", "x": 0, "y": 0, "width": 300, "height": 200})";
        case contract::ScreenArrangement::none:
            return {};
        }
        return {};
    }
    QByteArray writeConfiguration(contract::ScreenArrangement arrangement)
    {
        QFile file(folder.filePath(QStringLiteral("screens.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(R"({"screens": [)" + screensOf(arrangement) + "]}");
        return file.fileName().toLocal8Bit();
    }

    QTemporaryDir folder;
    std::optional<OffscreenProgram> program;
    QtScreens screens;
};

// As the end of the session does, in one go, and from within the loop.
TEST(QtApplicationTest, EndsWithTheSessionWhateverItsWindowsSay)
{
    class Refusing final : public QWidget {
    public:
        int asked = 0;

    protected:
        void closeEvent(QCloseEvent* event) override
        {
            ++asked;
            event->ignore();
        }
    };
    OffscreenProgram program;
    QtApplication application;
    Refusing shown;
    Refusing hidden;
    shown.show();
    hidden.show();
    hidden.hide();
    QTimer::singleShot(0, qApp, [] {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
        EXPECT_TRUE(quit.isAccepted());
    });
    QTimer::singleShot(20s, qApp, [] { QCoreApplication::exit(99); });
    EXPECT_EQ(application.run(), 0);
    EXPECT_EQ(shown.asked + hidden.asked, 0);
}

TEST(QtApplicationTest, EndsTheLoopOfADialogToo)
{
    OffscreenProgram program;
    QtApplication application;
    bool dialogEnded = false;
    QTimer::singleShot(0, qApp, [&] {
        QDialog dialog;
        QTimer::singleShot(0, &dialog, [&] { application.terminate(); });
        dialog.exec();
        dialogEnded = true;
    });
    EXPECT_EQ(application.run(), 0);
    EXPECT_TRUE(dialogEnded);
}

} // namespace

} // namespace tallowbay::qt

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, AlertsContract, qt::QtAlertsBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, ApplicationContract, qt::QtApplicationBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, ScreensContract, qt::QtScreensBackend);
} // namespace tallowbay::contract
