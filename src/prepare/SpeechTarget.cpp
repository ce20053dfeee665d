#include "prepare/SpeechTarget.h"

#include "prepare/Levels.h"
#include "prepare/Likeness.h"
#include "prepare/Noise.h"
#include "prepare/PeriodChoice.h"
#include "prepare/Spectra.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace prepare {
namespace {

/// Gains that make all bands equally loud, each by its level in its loud moments.
Spectra::Gains LevellingGains(const Spectra& spectra)
{
    const MelBands bands(15, kLowest, kHighest);
    std::vector<Levels> powers(bands.count);
    for (std::size_t frame = 0; frame < spectra.Size(); ++frame) {
        const auto inFrame = bands.PowersOf(spectra[frame]);
        for (std::size_t band = 0; band < bands.count; ++band)
            powers[band].push_back(inFrame[band]);
    }
    std::vector<float> ofBand(bands.count + 1); // and one for what belongs to none
    for (std::size_t band = 0; band < bands.count; ++band) {
        const auto loud = Loud(powers[band]);
        if (loud > 0) ofBand[band] = 1 / std::sqrt(loud);
    }
    Spectra::Gains gains(Spectra::kBins);
    std::ranges::transform(bands.ofBin, gains.begin(), [&](std::size_t band) { return ofBand[band]; });
    return gains;
}

/// Gains that keep what lies between the two, as it is.
Spectra::Gains GainsBetween(double lowest, double highest) // Hz
{
    const MelBands band(1, lowest, highest);
    Spectra::Gains gains(Spectra::kBins);
    std::ranges::transform(band.ofBin, gains.begin(), [](std::size_t k) { return k == 0 ? 1.0F : 0.0F; });
    return gains;
}

/// Without the silence at both ends.
Levels Trimmed(const Levels& target)
{
    const auto isHeard = [](float level) { return level != 0; };
    const auto first = std::ranges::find_if(target, isHeard);
    const auto last = std::find_if(target.rbegin(), target.rend(), isHeard).base();
    return first < last ? Levels(first, last) : Levels();
}

enum class Bands { AsTheyAre, Levelled };

Levels TargetOf(std::span<const float> sound, Bands bands)
{
    Spectra spectra(sound);
    auto noise = NoiseOf(spectra);
    TakeOut(noise, spectra);
    const auto audible = GainsBetween(kLowest, kSoundRate);
    std::ranges::transform(noise, audible, noise.begin(), std::multiplies());
    const auto gains = bands == Bands::Levelled ? LevellingGains(spectra) : GainsBetween(kLowest, kHighest);
    auto [plain, target] = spectra.Sounds(audible, gains);
    LevelMoments(Heard(plain, noise), target);
    return Trimmed(target);
}

machine::RunBytes PeriodsOf(const Levels& target, const machine::Playback& playback, std::size_t mostRunBytes,
                            const Progress& progress)
{
    constexpr Prices kPrices{.least = 0.09F, .most = 2.0F};
    auto fit = FitPeriods(target, playback, kPrices, mostRunBytes);
    progress(0.4);
    const auto nearer = Approach(target, playback, fit.price);
    progress(0.7);
    fit = FitPeriods(nearer, playback, {.least = fit.price, .most = kPrices.most}, mostRunBytes);
    progress(1);
    return fit.runBytes;
}

} // namespace

machine::RunBytes SpeechPeriods(std::span<const float> sound, const machine::Playback& playback,
                                std::size_t mostRunBytes, const Progress& progress)
{
    return PeriodsOf(TargetOf(sound, Bands::Levelled), playback, mostRunBytes, progress);
}

machine::RunBytes SoundPeriods(std::span<const float> sound, const machine::Playback& playback,
                               std::size_t mostRunBytes, const Progress& progress)
{
    return PeriodsOf(TargetOf(sound, Bands::AsTheyAre), playback, mostRunBytes, progress);
}

} // namespace prepare
