#include "platform/tesseract/Pitch.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace tallowbay::tesseract {

namespace {

constexpr double leastFit = 0.43; // proportional tables come up to 0.36

// How well the centres fit a grid of that pitch: 1 is perfectly.
double fit(const std::vector<double>& centres, double pitch)
{
    std::complex<double> sum = 0;
    for (const double centre : centres)
        sum += std::polar(1.0, 2 * std::numbers::pi * centre / pitch);
    return std::abs(sum) / static_cast<double>(centres.size());
}

// How much better than by chance they fit, which a few letters do well by chance: 0 for letters
// anywhere, 1 is perfectly.
double fitBeyondChance(const Stretches& stretches, double pitch)
{
    double sum = 0;
    double letters = 0;
    for (const auto& centres : stretches) {
        const auto count = static_cast<double>(centres.size());
        if (count < 2)
            continue;
        sum += (count * std::pow(fit(centres, pitch), 2) - 1) / (count - 1) * count;
        letters += count;
    }
    return letters == 0 ? 0 : sum / letters;
}

} // namespace

double pitchFit(const Stretches& stretches, double pitch)
{
    double sum = 0;
    double letters = 0;
    for (const auto& centres : stretches) {
        const auto count = static_cast<double>(centres.size());
        sum += std::pow(fit(centres, pitch), 2) * count;
        letters += count;
    }
    return letters == 0 ? 0 : sum / letters;
}

double pitchOf(const Stretches& stretches, double smallLetter)
{
    std::size_t letters = 0;
    for (const auto& centres : stretches)
        letters += centres.size();
    if (letters < 12)
        return 0;
    double best = leastFit;
    double pitch = 0;
    for (double candidate = smallLetter * 0.7; candidate < smallLetter * 1.75; candidate += 0.01) {
        const double here = fitBeyondChance(stretches, candidate);
        // What fits a pitch fits half of it as well.
        const bool twice = candidate > 1.9 * pitch && here > 0.9 * best && here > leastFit;
        if (here > best || twice) {
            best = here;
            pitch = candidate;
        }
    }
    return pitch;
}

} // namespace tallowbay::tesseract
