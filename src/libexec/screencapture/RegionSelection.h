#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

namespace tallowbay::screencapture {

// How a region comes to be selected, with the mouse, with the keyboard or with both.
//
// All coordinates are device pixels of the whole desktop. A region holds the pixel it was begun on
// and the one the pointer is on, so a click alone has picked one pixel, which is too little and
// selects nothing.
class RegionSelection {
public:
    enum class Key { Left, Right, Up, Down, Confirm, Cancel };
    enum class Step { Fine, Coarse };

    // At least one screen. A pointer that is on none of them moves to the nearest.
    RegionSelection(std::vector<QRect> screens, QPoint pointer);

    void pointerMoved(QPoint);
    void primaryPressed(QPoint);
    void primaryReleased(QPoint);
    void secondaryPressed();

    // Arrows move the pointer by 1 or 10 pixels; Confirm begins a region at the pointer, or ends
    // the one that a Confirm began; Cancel ends everything.
    void keyPressed(Key, Step);

    QPoint pointer() const { return at; }

    // What would be selected now; empty while no region was begun.
    std::optional<QRect> region() const;

    // Neither changes once it is true.
    bool cancelled() const { return isCancelled; }
    bool confirmed() const { return isConfirmed; }

private:
    enum class Device { Mouse, Keyboard };

    struct Begun {
        QPoint anchor;
        Device device;
    };

    void moveTo(QPoint);
    void confirmByKey();
    void end();
    bool ended() const { return isCancelled || isConfirmed; }

    std::vector<QRect> screens;
    QPoint at;
    std::optional<Begun> begun;
    bool isCancelled = false;
    bool isConfirmed = false;
};

// Where the label of a region goes on its screen: below its right end, else above, else inside its
// lower right corner; never off the screen.
QRect labelPlace(const QRect& region, QSize label, const QRect& screen, int gap);

} // namespace tallowbay::screencapture
