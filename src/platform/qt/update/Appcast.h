#pragma once

#include <QByteArray>
#include <QUrl>

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowbay::qt {

// Which of two versions is the newer, by their numbers: 1.10 follows 1.9, and 2.0 follows 2.0b3.
// Missing numbers count as zero; what follows a plus sign does not count.
std::strong_ordering compareVersions(std::string_view, std::string_view);

// One release of a feed.
struct AppcastItem {
    std::string version; // as people know it
    QUrl link; // where it can be had; empty if the feed names no web address
};

// The releases that an RSS feed of the usual kind for program updates offers to everyone here, in
// the feed's order: those of other channels (such as "beta"), for other systems, and without a
// version are left out. Empty optional if it is no such feed, or is damaged.
std::optional<std::vector<AppcastItem>> parseAppcast(const QByteArray&);

// The newest that is newer than our version. Of equals the first.
std::optional<AppcastItem> newestUpdate(
    const std::vector<AppcastItem>&, std::string_view ourVersion);

} // namespace tallowbay::qt
