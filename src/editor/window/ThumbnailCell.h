#pragma once

#include "base/Bitmap.h"
#include "base/Geometry.h"

#include <cstdint>
#include <string>

namespace tallowbay {

// What the cell of one screenshot shows.
struct ThumbnailCell {
    std::uint64_t id = 0; // its own for good, whatever index it moves to
    std::string caption; // may be empty
    std::string badge;
    Color headerColor;
    Color background;
    bool selected = false; // with a border in system blue
    bool checked = false; // with the white ground behind the mark
    Image thumbnail; // at the size of the well; null while it is on its way, and if there is none
    std::string name; // for assistive programs: "Screenshot 2, 2:05 PM"

    std::string checkboxSymbol() const { return checked ? "checkmark.square.fill" : "square"; }
    std::string checkboxLabel() const { return checked ? "Selected" : "Unselected"; }
    Color checkboxTint() const;
};

} // namespace tallowbay
