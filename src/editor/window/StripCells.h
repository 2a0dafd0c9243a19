#pragma once

#include "editor/strip/ThumbnailCaption.h"
#include "editor/window/ThumbnailCell.h"
#include "editor/window/ThumbnailLoader.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>

namespace tallowbay {

class Clock;
class ThumbnailStrip;
struct Platform;

// What the cells of the strip show: captions, what the mouse is over, and the thumbnails, those
// first that are seen.
//
// Thread: main queue.
class StripCells {
public:
    // The strip outlives the cells.
    StripCells(const Platform&, const ThumbnailStrip&);

    // The thumbnail of this screenshot has come.
    std::function<void(std::size_t index)> onThumbnail;

    ThumbnailCell cell(std::size_t index, bool isSelected) const;
    Image thumbnail(std::size_t index) const;

    // The mouse is over the cell, or has left it; of a new strip nobody knows. True if the cell
    // shows that.
    bool setHovered(std::size_t index, bool);
    void forgetHover() { hovered.clear(); }

    // Which thumbnails are read, and how large.
    void wantThumbnails(); // of the strip as it is now
    void visibleSlotsChanged(std::size_t first, std::size_t last);
    void scaleChanged(double pixelsPerPoint);
    void setLoadingPaused(bool paused) { thumbnails.setPaused(paused); }
    void fileChanged(const std::filesystem::path& url) { thumbnails.fileChanged(url); }

private:
    void thumbnailLoaded(std::uint64_t id);

    const ThumbnailStrip& strip;
    const Clock& clock;
    const ThumbnailCaption captions;
    ThumbnailLoader thumbnails;
    std::set<std::uint64_t> hovered;
    std::size_t firstVisible = 0;
    std::size_t lastVisible = 0;
};

} // namespace tallowbay
