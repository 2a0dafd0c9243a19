#pragma once

#include "desktop/support/XClient.h"
#include "desktop/support/XServer.h"
#include "views/editor/EditorLayout.h"

#include <cstdint>
#include <string>

namespace tallowbay::test {

// A place on the screen, in its pixels.
struct Place {
    int x = 0;
    int y = 0;
};
inline Place operator+(Place a, Place b)
{
    return {a.x + b.x, a.y + b.y};
}

// The colour of a pixel, 0xRRGGBB.
using Rgb = std::uint32_t;

// The editor as a person sees and uses it: where its parts are on the screen of a server, and what
// is seen there.
class EditorScreen {
public:
    // The scale is so many pixels a point.
    explicit EditorScreen(const XServer&, int scale = 1);

    // What is seen at a place.
    Rgb pixel(Place) const;
    bool shows(Place, Rgb) const; // about that colour
    bool waitForPixel(Place, Rgb) const;
    bool waitForChange(Place, Rgb from) const;

    // The editor stands in the colour of a screenshot, fully faded in.
    bool waitForHeader(Rgb) const;
    static constexpr Rgb headers[] = {0xfeabab, 0xabd4fe, 0xabfec4, 0xfee4ab, 0xd4abfe};

    bool isShown() const;
    bool waitUntilGone() const;

    // In the middle, dark as none of the test's pictures is there.
    bool showsToast() const;

    // By real keys and a real mouse.
    void press(const std::string& keys) const;
    void type(const std::string& text) const;
    void click(Place, int button = 1) const;
    void drag(Place from, Place to) const;

    // Its parts.
    Place header() const; // beside the title
    Place canvas(int x, int y) const; // so many points from the middle of the canvas
    Place tool(int tag) const; // 4 and 5 are undo and redo
    Place swatch(int tag) const;
    Place swatchCard() const; // a corner of it that no swatch covers
    Place cell(int place, int dividers = 0) const; // the middle, of a strip that is not scrolled
    Place checkbox(int place, int dividers = 0) const;
    bool showsChecked(int place, int dividers = 0) const;
    bool waitForCheck(int place, bool checked, int dividers = 0) const;

private:
    void mouse(const std::vector<std::string>& words) const;
    views::EditorLayout layout() const; // in points
    Place at(const QPoint& point) const;

    const XServer& server;
    mutable XClient eyes;
    int scale;
};

} // namespace tallowbay::test
