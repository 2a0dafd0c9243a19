#pragma once

#include "ui/HoverLook.h"

#include <QWidget>

namespace tallowbay::views {

// A part of a window that lights up under the mouse while the window has the keyboard.
class HoverView : public QWidget {
public:
    explicit HoverView(QWidget* parent, const HoverLook& = hoverViewLook);

protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;
    bool event(QEvent*) override;

private:
    void setHovered(bool);

    const HoverLook look;
    bool hovered = false;
};

} // namespace tallowbay::views
