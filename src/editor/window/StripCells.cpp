#include "editor/window/StripCells.h"

#include "editor/strip/ThumbnailStrip.h"
#include "editor/window/EditorLook.h"
#include "platform/Clock.h"
#include "platform/DesktopSettings.h"
#include "platform/Platform.h"

#include <cmath>

namespace tallowbay {

StripCells::StripCells(const Platform& platform, const ThumbnailStrip& strip)
    : strip(strip)
    , clock(platform.clock)
    , captions(platform.calendar, platform.desktop.screenshotNameDates)
    , thumbnails(platform.dispatch, platform.fileSystem, platform.imageCodec)
{
    thumbnails.onLoaded = [this](std::uint64_t id) { thumbnailLoaded(id); };
    scaleChanged(1);
}

ThumbnailCell StripCells::cell(std::size_t index, bool isSelected) const
{
    const ScreenshotRecord& record = strip.at(index);
    ThumbnailCell cell;
    cell.id = record.id;
    cell.caption = captions.parseTime(record.url, clock.wallNow());
    cell.badge = std::to_string(record.badgeNumber);
    cell.headerColor = headerPalette.at(record.headerColor);
    cell.background = hovered.contains(record.id) ? hoveredCellBackground : cellBackground;
    cell.selected = isSelected;
    cell.checked = record.checked;
    cell.thumbnail = thumbnails.thumbnail(record.id);
    cell.name = "Screenshot " + cell.badge + (cell.caption.empty() ? "" : ", " + cell.caption);
    return cell;
}

Image StripCells::thumbnail(std::size_t index) const
{
    return thumbnails.thumbnail(strip.at(index).id);
}

bool StripCells::setHovered(std::size_t index, bool isHovered)
{
    const std::uint64_t id = strip.at(index).id;
    return isHovered ? hovered.insert(id).second : hovered.erase(id) > 0;
}

void StripCells::thumbnailLoaded(std::uint64_t id)
{
    for (std::size_t index = 0; index < strip.size(); ++index) {
        if (strip.at(index).id == id)
            onThumbnail(index);
    }
}

void StripCells::visibleSlotsChanged(std::size_t first, std::size_t last)
{
    if (first == firstVisible && last == lastVisible)
        return; // as for most of the steps of a glide
    firstVisible = first;
    lastVisible = last;
    wantThumbnails();
}

void StripCells::wantThumbnails()
{
    thumbnails.want(nearestFirst(strip, firstVisible, lastVisible));
}

void StripCells::scaleChanged(double pixelsPerPoint)
{
    const auto pixels = [&](double points) {
        return static_cast<int>(std::ceil(points * pixelsPerPoint));
    };
    thumbnails.setBox({pixels(imageWellSize.width), pixels(imageWellSize.height)});
}

} // namespace tallowbay
