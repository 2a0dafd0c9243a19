#include "desktop/qt/QtDesktop.h"
#include "platform/qt/QtAlerts.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>

#include <gmock/gmock.h>

#include <optional>

namespace tallowbay::test {
namespace {

const Alert question{"Where to?", "It has to go\n\nsomewhere.", {"Here", "There", "Nowhere"}};

class AlertTest : public testing::Test {
protected:
    Subscription ask()
    {
        return alerts.showWarning(question, [this](std::size_t button) {
            ++answers;
            answer = button;
        });
    }

    QDialog* dialog() const
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == QLatin1String("alert") && widget->isVisible())
                return qobject_cast<QDialog*>(widget);
        return nullptr;
    }

    std::string labelText(const char* name) const
    {
        return dialog()->findChild<QLabel*>(QLatin1String(name))->text().toStdString();
    }

    QPushButton* button(const std::string& title) const
    {
        for (auto* button : dialog()->findChildren<QPushButton*>())
            if (button->text().toStdString() == title)
                return button;
        return nullptr;
    }

    QtDesktop desktop;
    qt::QtAlerts alerts;
    int answers = 0;
    std::optional<std::size_t> answer;
};

TEST_F(AlertTest, ShowsItsTextsAndButtonsAsTheyStand)
{
    const auto token = ask();

    EXPECT_TRUE(dialog()->isVisible());
    EXPECT_EQ(labelText("message"), question.message);
    EXPECT_EQ(labelText("informativeText"), question.informativeText);
    for (const auto& title : question.buttons)
        EXPECT_TRUE(button(title)) << title;
    EXPECT_TRUE(button("Here")->isDefault());
}

TEST_F(AlertTest, TakesClosingForTheLastButton)
{
    const auto token = ask();
    dialog()->close();
    EXPECT_EQ(answer, 2u);
    EXPECT_EQ(answers, 1);
}

TEST_F(AlertTest, TakesTheKeyboardAndReturnChoosesTheFirstButton)
{
    desktop.server().startWindowManager();
    const auto token = ask();
    ASSERT_TRUE(desktop.runUntil([this] { return dialog()->isActiveWindow(); }));

    const auto typist = desktop.server().start({"xdotool", "key", "Return"});

    EXPECT_TRUE(desktop.runUntil([this] { return answers > 0; }));
    EXPECT_EQ(answer, 0u);
}

TEST_F(AlertTest, TakesEscapeForTheLastButton)
{
    desktop.server().startWindowManager();
    const auto token = ask();
    ASSERT_TRUE(desktop.runUntil([this] { return dialog()->isActiveWindow(); }));

    const auto typist = desktop.server().start({"xdotool", "key", "Escape"});

    EXPECT_TRUE(desktop.runUntil([this] { return answers > 0; }));
    EXPECT_EQ(answer, 2u);
}

} // namespace
} // namespace tallowbay::test
