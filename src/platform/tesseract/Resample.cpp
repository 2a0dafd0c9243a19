#include "platform/tesseract/Resample.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace tallowbay::tesseract {

namespace {

// What one value of the result is made of.
struct Mix {
    int first = 0;
    std::vector<float> weights;
};

// The cubic that goes through its points and neither blurs nor rings much.
double cubic(double x)
{
    x = std::abs(x);
    if (x < 1)
        return (1.5 * x - 2.5) * x * x + 1;
    return x < 2 ? ((-0.5 * x + 2.5) * x - 4) * x + 2 : 0;
}

std::vector<Mix> mixes(int from, int to)
{
    const double step = static_cast<double>(from) / to;
    const double spread = std::max(1.0, step);
    std::vector<Mix> result(static_cast<std::size_t>(to));
    for (int at = 0; at < to; ++at) {
        const double centre = (at + 0.5) * step - 0.5;
        const int begin = std::max(0, static_cast<int>(std::ceil(centre - 2 * spread)));
        const int end = std::min(from - 1, static_cast<int>(std::floor(centre + 2 * spread)));
        Mix& mix = result[static_cast<std::size_t>(at)];
        mix.first = begin;
        double sum = 0;
        for (int source = begin; source <= end; ++source) {
            mix.weights.push_back(static_cast<float>(cubic((source - centre) / spread)));
            sum += mix.weights.back();
        }
        for (float& weight : mix.weights)
            weight /= static_cast<float>(sum);
    }
    return result;
}

std::uint8_t mixed(const Mix& mix, const std::uint8_t* values, std::size_t step)
{
    float sum = 0.5f;
    values += static_cast<std::size_t>(mix.first) * step;
    for (const float weight : mix.weights) {
        sum += weight * *values;
        values += step;
    }
    return static_cast<std::uint8_t>(std::clamp(sum, 0.0f, 255.0f));
}

} // namespace

Plane resampled(const Plane& plane, PixelSize size)
{
    Plane wide({size.width, plane.size.height});
    const auto columns = mixes(plane.size.width, size.width);
    for (int y = 0; y < wide.size.height; ++y) {
        for (std::size_t x = 0; x < columns.size(); ++x)
            wide.row(y)[x] = mixed(columns[x], plane.row(y), 1);
    }
    Plane result(size);
    const auto rows = mixes(plane.size.height, size.height);
    const auto stride = static_cast<std::size_t>(size.width);
    for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x)
            result.row(y)[x] = mixed(rows[static_cast<std::size_t>(y)], wide.row(0) + x, stride);
    }
    return result;
}

} // namespace tallowbay::tesseract
