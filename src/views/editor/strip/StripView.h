#pragma once

#include "views/editor/strip/CellView.h"
#include "views/editor/strip/OverlayScroller.h"
#include "views/editor/strip/StripScroll.h"

#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

namespace tallowbay::views {

// The strip of screenshots, which scrolls sideways: by wheel, touchpad, scroller, and by dragging
// it with the mouse. Where a hand pulls it beyond its ends it gives, and glides back when let go.
//
// It is one stop of the Tab key: arrows choose the screenshot, Space checks it.
class StripView final : public QWidget {
public:
    StripView(AnnotationWindow&, QWidget* parent);

    // As the port's.
    void stripChanged();
    void cellChanged(std::size_t index);
    void scrollToVisible(std::size_t index);

    // Tells the logic what is seen, for what it reads first.
    void reportVisible();

    // Left to right, without the dividers.
    const std::vector<CellView*>& cellsInOrder() const { return shownCells; }

protected:
    void resizeEvent(QResizeEvent*) override;
    void showEvent(QShowEvent*) override;
    void hideEvent(QHideEvent*) override;
    bool event(QEvent*) override;
    void wheelEvent(QWheelEvent*) override;
    void mousePressEvent(QMouseEvent*) override;
    void mouseMoveEvent(QMouseEvent*) override;
    void mouseReleaseEvent(QMouseEvent*) override;
    void keyPressEvent(QKeyEvent*) override;
    void focusInEvent(QFocusEvent*) override;
    void focusOutEvent(QFocusEvent*) override;

private:
    class Divider;

    void showCells(std::size_t count);
    void showDividers(std::size_t count);
    void arrange();
    CellView* cellOf(std::size_t index) const;
    void takePress(const QPoint&);
    void click();
    void scrollToSelected();
    void gestureLost();
    void updateFocusRings();
    void updateFocusRing(CellView&);

    AnnotationWindow& logic;
    QWidget* const content;
    OverlayScroller* const scroller;
    std::vector<CellView*> shownCells; // in the order of the screen
    std::vector<CellView*> cellOfIndex; // by the screenshot's index
    std::vector<QWidget*> dividers;
    StripScroll scrolling;
    QPoint pressedAt;
    std::optional<std::uint64_t> pressedCell; // its screenshot's id: it may move meanwhile
    bool checkboxPressed = false;
    bool pressed = false;
    bool dragging = false;
};

} // namespace tallowbay::views
