#pragma once

#include "ui/HoverLook.h"

#include <QAbstractButton>

namespace tallowbay::views {

// A button of the first-run window. It lights up whether or not the window has the keyboard.
class OnboardingButtonView final : public QAbstractButton {
public:
    OnboardingButtonView(const QString& text, OnboardingHoverButton::Style, QWidget* parent);

protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;
    void changeEvent(QEvent*) override;

private:
    OnboardingHoverButton logic;
};

} // namespace tallowbay::views
