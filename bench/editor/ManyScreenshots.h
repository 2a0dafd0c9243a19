#pragma once

#include "desktop/program/EditorScreen.h"
#include "desktop/program/Home.h"

#include <array>
#include <cstddef>
#include <filesystem>

namespace tallowbay::bench {

// A home whose last session left many screenshots of 3840x2160 in the strip, compressed as the
// program does it. There are five different ones, in turn; every fiftieth is checked.
class ManyScreenshots {
public:
    // In the middle of each picture stands a line on white, so many pixels wide: wide enough for
    // the canvas, too fine for a thumbnail.
    ManyScreenshots(std::size_t count, int lineWidth);

    const test::Home& home() const { return place; }
    std::size_t count() const { return number; }
    std::filesystem::path picture(std::size_t index) const; // without a copy of its own

    // Of the line, which is a thumbnail's at no place.
    test::Rgb lineColor(std::size_t index) const { return lines[index % lines.size()]; }

private:
    void makePicture(std::size_t kind, int lineWidth);
    void fillSession() const;

    test::Home place;
    std::size_t number;
    std::array<test::Rgb, 5> lines{};
};

} // namespace tallowbay::bench
