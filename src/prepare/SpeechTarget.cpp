#include "prepare/SpeechTarget.h"

#include "prepare/Levels.h"
#include "prepare/Likeness.h"
#include "prepare/Noise.h"
#include "prepare/PeriodChoice.h"
#include "prepare/Played.h"
#include "prepare/Spectra.h"
#include "prepare/SpeechLikeness.h"
#include "prepare/Strikes.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <utility>

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
    sound::Samples plain; // the same moments, all that can be heard of them, as loud as they are
    double start;         // seconds that were left out before it
};

Target Trimmed(const sound::Samples& target, const sound::Samples& plain)
{
    const auto isHeard = [](float sample) { return sample != 0; };
    const auto first = std::ranges::find_if(target, isHeard) - target.begin();
    const auto last = std::find_if(target.rbegin(), target.rend(), isHeard).base() - target.begin();
    if (first >= last) return {};
    return {.sound = sound::Samples(target.begin() + first, target.begin() + last),
            .plain = sound::Samples(plain.begin() + first, plain.begin() + last),
            .start = sound::SecondsAt(static_cast<std::size_t>(first))};
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

enum class BandLevels { AsTheyAre, Equal };

Target TargetOf(std::span<const float> sound, BandLevels bands, Noise whatOfNoise, const machine::Playback& playback,
                const core::Progress& progress)
{
    Spectra spectra(WithoutOffset(sound), progress);
    auto noise = whatOfNoise == Noise::TakenOut ? NoiseOf(spectra, progress) : Powers(Spectra::kBins);
    TakeOut(noise, spectra, progress);
    const auto audible = GainsBetween(kLowest, sound::kRate);
    std::ranges::transform(noise, audible, noise.begin(), std::multiplies());
    const auto gains = bands == BandLevels::Equal ? LevellingGains(spectra, progress) : GainsBetween(kLowest, kHighest);
    auto [plain, target] = spectra.Sounds(audible, gains, progress);
    auto heard = Heard(plain, noise, bands == BandLevels::Equal ? Clicks::TakenOut : Clicks::Kept);
    if (bands == BandLevels::AsTheyAre) SilenceBeforeStrikes(sound, playback, heard, progress);
    if (!progress.GoesOn()) return {};
    LevelMoments(heard, target);
    if (!progress.GoesOn()) return {};
    return Trimmed(target, plain);
}

// A level of 1 earns a period at most about 1 a millisecond: at the most price none above 500 Hz is worth a byte, which
// is no word any more. The least are measured: docs/listening.md.
constexpr Prices kSpeechPrices{.least = 0.07F, .most = 2.0F};
constexpr Prices kSoundPrices{.least = 0.085F, .most = 2.0F};

/// Moves `target` in a direction, by so much of its level, wherever it is heard. Its level stays.
void Move(const sound::Samples& direction, double share, sound::Samples& target)
{
    double before = 0;
    double along = 0;
    for (std::size_t i = 0; i < target.size(); ++i) {
        if (target[i] == 0) continue;
        before += target[i] * target[i];
        along += direction[i] * direction[i];
    }
    const auto step = share * std::sqrt(before / along);
    if (!std::isnormal(step)) return; // there is no way to go
    double after = 0;
    for (std::size_t i = 0; i < target.size(); ++i) {
        if (target[i] == 0) continue;
        target[i] += static_cast<float>(step) * direction[i];
        after += target[i] * target[i];
    }
    const auto gain = static_cast<float>(std::sqrt(before / after));
    for (auto& sample : target)
        sample *= gain;
}

/// The list that is most like the speech of all that are chosen for targets which `likeness` draws, beginning with
/// `target`: in each round the direction at what is chosen is added. A list's score is linear in its wave and the
/// choice finds the greatest, so this is dual averaging (Nesterov: Primal-dual subgradient methods for convex
/// problems, 2009).
machine::RunBytes SpeechList(sound::Samples target, const SpeechLikeness& likeness, const Limits& limits,
                             core::Steps& steps)
{
    constexpr int kRounds = 8;
    constexpr double kFirstStep = 0.45; // of the target's level
    constexpr double kNextStep = 0.8;   // of the one before
    constexpr double kWanted = 0.99;    // of the bytes asked for
    constexpr double kCheaper = 0.85;   // at least, of the price of the round before
    constexpr double kDearer = 1.18;    // at most
    const auto& playback = limits.playback;
    auto [runBytes, price] = FitPeriods(target, playback, kSpeechPrices, limits.runBytes, steps, kRounds);
    if (runBytes.empty() || runBytes.size() > limits.runBytes) return runBytes;
    machine::RunBytes best;
    double value = 0;
    const auto directionAt = [&](machine::RunBytes list, const core::Progress& progress) {
        auto place = likeness.At(Played(list, playback, target.size()), progress);
        if (list.size() <= limits.runBytes && (best.empty() || place.value > value)) {
            best = std::move(list);
            value = place.value;
        }
        return place.direction;
    };
    for (int round = 0; round < kRounds; ++round) {
        const int tries = price > kSpeechPrices.least ? 5 : 0; // about as many where the size won't fit at once
        const auto progress = steps.Next(kRounds - 1 - round + tries);
        const auto bytes = static_cast<double>(runBytes.size());
        const auto excess = bytes / (kWanted * static_cast<double>(limits.runBytes));
        Move(directionAt(std::move(runBytes), progress.Stage(0, 0.3)), // of the time that a round takes
             kFirstStep * std::pow(kNextStep, round), target);
        if (!progress.GoesOn(0.3)) return {};
        price = std::max(kSpeechPrices.least, price * static_cast<float>(std::clamp(excess, kCheaper, kDearer)));
        runBytes = PeriodChoice(target, playback, progress).AtPrice(price, progress.Stage(0.3, 1));
    }
    if (price > kSpeechPrices.least)
        runBytes = FitPeriods(target, playback, kSpeechPrices, limits.runBytes, steps, 1).runBytes;
    directionAt(std::move(runBytes), steps.Next(0));
    return best;
}

machine::RunBytes SoundList(const sound::Samples& target, const Limits& limits, core::Steps& steps)
{
    const auto& playback = limits.playback;
    auto fit = FitPeriods(target, playback, kSoundPrices, limits.runBytes, steps, kApproaches + 1);
    const int tries = fit.price > kSoundPrices.least ? 2 : 0; // as many times the size won't fit at once again
    const auto nearer = Approach(target, playback, fit.price, steps, 1 + tries);
    return FitPeriods(nearer, playback, kSoundPrices, limits.runBytes, steps, tries).runBytes;
}

} // namespace

Periods SpeechPeriods(std::span<const float> sound, Noise noise, const Limits& limits, const core::Progress& progress)
{
    auto [target, plain, start] =
        TargetOf(sound, BandLevels::Equal, noise, limits.playback, progress.Stage(0, 0.07)); // of the time
    const SpeechLikeness likeness(std::exchange(plain, {}), progress.Stage(0.07, 0.1));
    core::Steps steps(progress.Stage(0.1, 1));
    return {.runBytes = SpeechList(std::move(target), likeness, limits, steps), .start = start};
}

Periods SoundPeriods(std::span<const float> sound, Noise noise, const Limits& limits, const core::Progress& progress)
{
    const auto target =
        TargetOf(sound, BandLevels::AsTheyAre, noise, limits.playback, progress.Stage(0, 0.1)); // of the time
    core::Steps steps(progress.Stage(0.1, 1));
    return {.runBytes = SoundList(target.sound, limits, steps), .start = target.start};
}

} // namespace prepare
