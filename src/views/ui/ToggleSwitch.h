#pragma once

#include <QAbstractButton>

namespace tallowbay::views {

// A switch that is on or off. Space, Enter and a click turn it over.
class ToggleSwitch final : public QAbstractButton {
public:
    ToggleSwitch(const QString& name, QWidget* parent);

protected:
    void paintEvent(QPaintEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
};

} // namespace tallowbay::views
