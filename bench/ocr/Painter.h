#pragma once

#include "Sample.h"

#include <filesystem>

namespace tallowbay::bench {

struct PictureSize {
    int width;
    int height;
};

// Paints a sample as a PNG file: no larger than it needs to be, or of exactly this size, in which
// case rows that do not fit are taken out of the sample first. Throws std::runtime_error.
void paint(Sample&, const std::filesystem::path&, std::optional<PictureSize> exactly = {});

} // namespace tallowbay::bench
