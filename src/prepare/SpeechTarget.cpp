#include "prepare/SpeechTarget.h"

#include "prepare/Levels.h"
#include "prepare/Likeness.h"
#include "prepare/Noise.h"
#include "prepare/PeriodChoice.h"
#include "prepare/Spectra.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace prepare {
namespace {

/// Gains that make all bands equally loud, each by its level in its loud moments. Their number is measured:
/// docs/listening.md.
Spectra::Gains LevellingGains(const Spectra& spectra, const core::Progress& progress)
{
    const MelBands bands(15, kLowest, kHighest);
    std::vector<Powers> powers(bands.count);
    for (std::size_t frame = 0; frame < spectra.Size() && progress.GoesOn(); ++frame) {
        const auto inFrame = bands.PowersOf(spectra[frame]);
        for (std::size_t band = 0; band < bands.count; ++band)
            powers[band].push_back(inFrame[band]);
    }
    std::vector<float> ofBand(bands.count + 1); // and one for what belongs to none
    for (std::size_t band = 0; band < bands.count; ++band) {
        const auto loud = LoudPower(powers[band]);
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

/// What the choice is to come near to, without the silence at both ends.
struct Target {
    sound::Samples sound;
    double start; // seconds that were left out before it
};

Target Trimmed(const sound::Samples& target)
{
    const auto isHeard = [](float sample) { return sample != 0; };
    const auto first = std::ranges::find_if(target, isHeard);
    const auto last = std::find_if(target.rbegin(), target.rend(), isHeard).base();
    if (first >= last) return {};
    return {.sound = sound::Samples(first, last),
            .start = sound::SecondsAt(static_cast<std::size_t>(first - target.begin()))};
}

/// An offset isn't heard, but where it sets in and ends.
sound::Samples WithoutOffset(std::span<const float> sound)
{
    const auto offset = static_cast<float>(std::accumulate(sound.begin(), sound.end(), 0.0) /
                                           std::max(1.0, static_cast<double>(sound.size())));
    sound::Samples centred(sound.size());
    std::ranges::transform(sound, centred.begin(), [=](float sample) { return sample - offset; });
    return centred;
}

enum class Bands { AsTheyAre, Levelled };

Target TargetOf(std::span<const float> sound, Bands bands, Noise whatOfNoise, const core::Progress& progress)
{
    Spectra spectra(WithoutOffset(sound), progress);
    auto noise = whatOfNoise == Noise::TakenOut ? NoiseOf(spectra, progress) : Powers(Spectra::kBins);
    TakeOut(noise, spectra, progress);
    const auto audible = GainsBetween(kLowest, sound::kRate);
    std::ranges::transform(noise, audible, noise.begin(), std::multiplies());
    const auto gains = bands == Bands::Levelled ? LevellingGains(spectra, progress) : GainsBetween(kLowest, kHighest);
    auto [plain, target] = spectra.Sounds(audible, gains, progress);
    const auto heard = Heard(plain, noise, bands == Bands::Levelled ? Clicks::TakenOut : Clicks::Kept);
    if (!progress.GoesOn()) return {};
    LevelMoments(heard, target);
    if (!progress.GoesOn()) return {};
    return Trimmed(target);
}

Periods PeriodsOf(std::span<const float> sound, Bands bands, Noise noise, const Limits& limits,
                  const core::Progress& progress)
{
    // A level of 1 earns a period at most about 1 a millisecond: at the most price none above 500 Hz is worth a byte,
    // which is no word any more. The least is measured: docs/listening.md.
    constexpr Prices kPrices{.least = 0.085F, .most = 2.0F};
    const auto target = TargetOf(sound, bands, noise, progress.Stage(0, 0.1)); // of the time that all takes
    core::Steps steps(progress.Stage(0.1, 1));
    const auto& playback = limits.playback;
    auto fit = FitPeriods(target.sound, playback, kPrices, limits.runBytes, steps, kApproaches + 1);
    const int tries = fit.price > kPrices.least ? 2 : 0; // as many times the size won't fit at once again
    const auto nearer = Approach(target.sound, playback, fit.price, steps, 1 + tries);
    fit = FitPeriods(nearer, playback, kPrices, limits.runBytes, steps, tries);
    return {.runBytes = std::move(fit.runBytes), .start = target.start};
}

} // namespace

Periods SpeechPeriods(std::span<const float> sound, Noise noise, const Limits& limits, const core::Progress& progress)
{
    return PeriodsOf(sound, Bands::Levelled, noise, limits, progress);
}

Periods SoundPeriods(std::span<const float> sound, Noise noise, const Limits& limits, const core::Progress& progress)
{
    return PeriodsOf(sound, Bands::AsTheyAre, noise, limits, progress);
}

} // namespace prepare
