#pragma once

#include "ui/HoverLook.h"

#include <QAbstractButton>

namespace tallowbay::views {

// A button without a border: a symbol that lights up under the mouse and shows where the keyboard
// is. The light takes the place of its background. Space and Enter press it; it leaves all other
// keys to the window.
//
// What it shows is set from outside. A checkable button does not check itself: whoever it asked for
// something tells what became of it.
class HoverButton : public QAbstractButton {
public:
    HoverButton(const QString& name, const HoverLook&, QWidget* parent);

    void setSymbol(const QString& name, double textSize);
    void setTint(const QColor&);
    void setBackground(const QColor&); // invisible unless it is set

protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;
    bool event(QEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void nextCheckState() override { }

    // What the button shows. Where it hides what is behind it, the light of the mouse lies over it.
    virtual void paintContent(QPainter&);
    void setLitFromAbove() { litFromAbove = true; }

private:
    void setHovered(bool);
    void paintLight(QPainter&, const QColor&);
    void paintFocus(QPainter&);

    const HoverLook look;
    bool hovered = false;
    bool litFromAbove = false;
    QString symbolName;
    double symbolSize = 16;
    QColor tint = Qt::white;
    QColor background = Qt::transparent;
};

} // namespace tallowbay::views
