#include "platform/tesseract/Pitch.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace tallowbay::tesseract {

namespace {

// How well the centres fit a grid of that pitch: 1 is perfectly.
double fit(const std::vector<double>& centres, double pitch)
{
    std::complex<double> sum = 0;
    for (const double centre : centres)
        sum += std::polar(1.0, 2 * std::numbers::pi * centre / pitch);
    return std::abs(sum) / static_cast<double>(centres.size());
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
    double best = 0.55;
    double pitch = 0;
    for (double candidate = smallLetter * 0.95; candidate < smallLetter * 1.4; candidate += 0.01) {
        const double here = pitchFit(stretches, candidate);
        if (here > best) {
            best = here;
            pitch = candidate;
        }
    }
    return pitch;
}

} // namespace tallowbay::tesseract
