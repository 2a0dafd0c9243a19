#pragma once

#include "editor/window/AnnotationWindow.h"

#include <QWidget>

#include <optional>
#include <string>

namespace tallowbay::views {

// One screenshot in the strip. It keeps nothing but the index: what there is to see, the logic
// says.
class CellView final : public QWidget {
public:
    CellView(AnnotationWindow&, QWidget* parent);

    void setIndex(std::size_t);
    std::size_t index() const { return shownIndex; }
    std::uint64_t id() const { return logic.id(shownIndex); }
    ThumbnailCell cell() const { return logic.cell(shownIndex); }

    // Shown on the selected cell while the strip has the keyboard.
    void setFocusRing(bool);

    // What has changed since they were told last. The keyboard is in the strip, or elsewhere.
    void tellAssistivePrograms(bool hasKeyboard);

    void press() { logic.cellClicked(shownIndex); }
    void toggle() { logic.checkboxToggled(shownIndex); }

    static QRect checkboxRect(); // in the cell

protected:
    void paintEvent(QPaintEvent*) override;
    void enterEvent(QEnterEvent*) override;
    void leaveEvent(QEvent*) override;

private:
    void paintHeader(QPainter&, const ThumbnailCell&) const;
    void paintCheckbox(QPainter&, const ThumbnailCell&) const;
    void paintImage(QPainter&, const ThumbnailCell&) const;

    AnnotationWindow& logic;
    std::size_t shownIndex = 0;
    bool focusRing = false;
    struct Told {
        std::string name;
        bool selected = false;
        bool checked = false;
    };
    std::optional<Told> told; // empty until assistive programs know of it
};

} // namespace tallowbay::views
