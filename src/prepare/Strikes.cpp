#include "prepare/Strikes.h"

#include "prepare/Levels.h"
#include "prepare/Spectra.h"
#include "prepare/WindowSpectrum.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace prepare {
namespace {

constexpr std::size_t kHop = 110; // samples from one moment to the next: 5 ms

/// In dB, band by band, at each moment: against the band's loud moments, -40 at least.
std::vector<std::vector<float>> LevelsOf(std::span<const float> sound, const core::Progress& progress)
{
    constexpr double kLoud = 0.99; // of the moments are no louder
    constexpr float kSoftest = 0.01F;
    constexpr float kFaintest = 0.001F; // of the loudest band: one that is 60 dB softer has no sound of its own
    const MelBands bands(40, 60, 8000); // Hz
    WindowSpectrum spectrum(HannWindow(Spectra::kWindow), Spectra::kTransform);
    std::vector<std::vector<float>> levels(bands.count);
    for (std::size_t centre = 0; centre < sound.size() && progress.GoesOn(centre, sound.size()); centre += kHop) {
        const auto powers = bands.PowersOf(spectrum.At(sound, centre));
        for (std::size_t band = 0; band < bands.count; ++band)
            levels[band].push_back(std::sqrt(powers[band]));
    }
    std::vector<float> loud(bands.count);
    std::ranges::transform(levels, loud.begin(), [](const auto& band) { return Quantile(band, kLoud); });
    const auto faintest = kFaintest * *std::ranges::max_element(loud);
    for (std::size_t band = 0; band < bands.count; ++band) {
        const auto reference = std::max(loud[band], faintest);
        for (auto& level : levels[band])
            level = reference > 0 ? 20 * std::log10(std::max(level / reference, kSoftest)) : 0;
    }
    return levels;
}

/// By how many dB the bands rise at each moment, in the mean of them.
std::vector<float> RisesOf(const std::vector<std::vector<float>>& levels, const core::Progress& progress)
{
    constexpr std::size_t kReach = 3; // moments before and behind: about a window
    std::vector<float> rises(levels.front().size());
    for (std::size_t k = kReach; k + 1 < rises.size() && progress.GoesOn(); ++k) {
        for (std::size_t band = 0; band < levels.size(); ++band) {
            auto before = levels[band][k - kReach];
            if (band > 0) before = std::max(before, levels[band - 1][k - kReach]);
            if (band + 1 < levels.size()) before = std::max(before, levels[band + 1][k - kReach]);
            rises[k] += std::max(0.0F, levels[band][k + 1] - before);
        }
        rises[k] /= static_cast<float>(levels.size());
    }
    return rises;
}

/// The samples at which they begin, 90 ms apart at least.
std::vector<std::size_t> Strikes(std::span<const float> sound, const core::Progress& progress)
{
    constexpr std::size_t kAround = 30; // moments on either side, in whose midst a strike stands out
    constexpr float kOut = 2;           // dB
    constexpr std::size_t kNear = 8;    // moments on either side, of which it is the greatest
    constexpr std::size_t kApart = 18;  // moments
    const auto rises = RisesOf(LevelsOf(sound, progress), progress);
    std::vector<std::size_t> strikes;
    std::size_t earliest = 0;
    for (std::size_t k = kNear; k + kNear < rises.size() && progress.GoesOn(); ++k) {
        if (k < earliest || rises[k] < *std::max_element(&rises[k - kNear], &rises[k + kNear + 1])) continue;
        const auto first = k - std::min(k, kAround);
        const auto last = std::min(k + kAround + 1, rises.size());
        if (rises[k] <= kOut + Quantile({&rises[first], &rises[last - 1] + 1}, 0.5)) continue;
        strikes.push_back((k - 1) * kHop); // what rises within a window begins before its middle
        earliest = k + kApart;
    }
    return strikes;
}

} // namespace

void SilenceBeforeStrikes(std::span<const float> sound, const machine::Playback& playback, Mask& heard,
                          const core::Progress& progress)
{
    constexpr double kGap = 0.030; // seconds, at least
    const auto silence = machine::SecondsOf(machine::CyclesOf(machine::kStaysHigh, playback), playback.machine);
    const auto gap = sound::SamplesIn(std::max(kGap, silence));
    for (const auto strike : Strikes(sound, progress)) {
        const auto last = heard.begin() + static_cast<std::ptrdiff_t>(strike);
        std::fill(last - static_cast<std::ptrdiff_t>(std::min(strike, gap)), last, false);
    }
}

} // namespace prepare
