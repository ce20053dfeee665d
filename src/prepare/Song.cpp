#include "prepare/Song.h"

#include "prepare/Levels.h"
#include "prepare/Likeness.h"
#include "prepare/LongFrames.h"
#include "prepare/PeriodChoice.h"
#include "prepare/Played.h"
#include "prepare/Strikes.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace prepare {
namespace {

constexpr std::array kBandEdges{100.0, 250.0, 600.0, 1300.0, 2400.0, 4000.0}; // Hz
constexpr auto kBands = kBandEdges.size() - 1;

/// For each bin; kBands where it belongs to none.
std::size_t BandOf(std::size_t bin)
{
    const auto above = std::ranges::upper_bound(kBandEdges, LongFrames::HertzOf(bin)) - kBandEdges.begin();
    return above == 0 ? kBands : static_cast<std::size_t>(above) - 1;
}

/// Where anything is to be heard.
Mask HeardIn(std::span<const float> sound)
{
    constexpr double kSoftest = -60; // dB, against the loud moments: below is silence, if not that of a room
    const auto level = Envelope(sound, kMoment);
    const auto softest = LoudAmplitude(level) * AmplitudeOf(kSoftest);
    Mask heard(sound.size());
    std::transform(level.begin(), level.end(), heard.begin(), [=](float amplitude) { return amplitude > softest; });
    return heard;
}

/// Of each band, for its loud moments to be 1.
std::array<float, kBands + 1> LevellingGains(std::span<const float> sound, const core::Progress& progress)
{
    LongFrames frames;
    std::array<Powers, kBands + 1> powers;
    const auto count = LongFrames::CountIn(sound.size());
    for (std::size_t frame = 0; frame < count && progress.GoesOn(frame, count); ++frame) {
        for (auto& band : powers)
            band.push_back(0);
        const auto bins = frames.Take(sound, frame);
        for (std::size_t k = 0; k < bins.size(); ++k)
            powers[BandOf(k)].back() += std::norm(bins[k]);
    }
    std::array<float, kBands + 1> gains{};
    for (std::size_t band = 0; band < kBands; ++band) {
        const auto loud = LoudPower(powers[band]);
        gains[band] = loud > 0 ? 1 / std::sqrt(loud) : 0;
    }
    return gains;
}

/// Raises each bin a little by how far it stands out of its neighbourhood.
void RaisePartials(std::span<LongFrames::Bin> bins)
{
    constexpr std::size_t kReach = 15; // bins on either side: 160 Hz
    constexpr float kMost = 4;         // times the neighbourhood's mean is as far as counts
    constexpr float kPower = 0.4F;     // of that
    constexpr float kNotZero = 1e-9F;  // for a quotient
    std::array<float, LongFrames::kBins> heights;
    std::ranges::transform(bins, heights.begin(), [](auto bin) { return std::sqrt(std::norm(bin)); });
    float sum = 0;
    for (std::size_t k = 0; k < kReach; ++k)
        sum += heights[k];
    for (std::size_t k = 0; k < bins.size(); ++k) {
        if (k + kReach < heights.size()) sum += heights[k + kReach];
        if (k > kReach) sum -= heights[k - kReach - 1];
        const auto mean = std::max(0.0F, sum) / (2 * kReach + 1);
        bins[k] *= std::pow(std::min(heights[k] / (mean + kNotZero), kMost), kPower);
    }
}

sound::Samples TargetOf(std::span<const float> sound, const Mask& heard, const core::Progress& progress)
{
    const auto gains = LevellingGains(sound, progress.Stage(0, 0.5));
    const auto rest = progress.Stage(0.5, 1);
    LongFrames frames;
    sound::Samples target(sound.size());
    const auto count = LongFrames::CountIn(sound.size());
    for (std::size_t frame = 0; frame < count && rest.GoesOn(frame, count); ++frame) {
        const auto bins = frames.Take(sound, frame);
        RaisePartials(bins);
        for (std::size_t k = 0; k < bins.size(); ++k)
            bins[k] *= gains[BandOf(k)];
        frames.Add(bins, frame, target);
    }
    LevelMoments(heard, target);
    return target;
}

/// `bins` of the target with the phases of the `played` ones: more where these have too little, less where too much.
void AskFor(std::span<LongFrames::Bin> bins, std::span<const LongFrames::Bin> played)
{
    constexpr double kHighest = 4200; // Hz: above, a square wave has its overtones anyhow, and nothing is asked against
    constexpr float kNotZero = 1e-9F; // for quotients
    float both = 0;
    float squares = 0;
    for (std::size_t k = 0; k < bins.size(); ++k) {
        both += std::sqrt(std::norm(bins[k]) * std::norm(played[k]));
        squares += std::norm(played[k]);
    }
    const auto scale = both / (squares + kNotZero);
    for (std::size_t k = 0; k < bins.size(); ++k) {
        const auto wanted = std::sqrt(std::norm(bins[k]));
        const auto has = std::sqrt(std::norm(played[k]));
        auto ask = 2 * wanted - scale * has;
        if (LongFrames::HertzOf(k) > kHighest) ask = std::max(ask, 0.0F);
        bins[k] = ask / (has + kNotZero) * played[k];
    }
}

/// `target` as a square wave gets nearer to it than it gets to `asked`, of which `list` was chosen.
void Approach(const sound::Samples& target, std::span<const machine::RunByte> list, const machine::Playback& playback,
              const Mask& heard, sound::Samples& asked, const core::Progress& progress)
{
    constexpr float kStep = 0.7F;
    const auto played = Played(list, playback, target.size());
    sound::Samples next(target.size());
    LongFrames ofTarget;
    LongFrames ofPlayed;
    const auto count = LongFrames::CountIn(target.size());
    for (std::size_t frame = 0; frame < count && progress.GoesOn(frame, count); ++frame) {
        const auto bins = ofTarget.Take(target, frame);
        AskFor(bins, ofPlayed.Take(played, frame));
        ofTarget.Add(bins, frame, next);
    }
    LevelMoments(heard, next);
    for (std::size_t i = 0; i < asked.size(); ++i)
        asked[i] = kStep * next[i] + (1 - kStep) * asked[i];
}

machine::RunBytes ListFor(const sound::Samples& target, const Mask& heard, const Limits& limits, core::Steps& steps)
{
    constexpr int kRounds = 3;
    constexpr Prices kPrices{.least = 0.2F, .most = 4}; // at the most hardly a bass is left
    auto asked = target;
    for (std::size_t i = 0; i < asked.size(); ++i)
        if (!heard[i]) asked[i] = 0;
    auto [list, price] = FitPeriods(asked, limits.playback, kPrices, limits.runBytes, steps, kRounds);
    if (list.empty() || list.size() > limits.runBytes) return list;
    const int tries = price > kPrices.least ? 3 : 0; // about as many where the size won't fit at once
    for (int left = kRounds; left > 0; --left) {
        const auto progress = steps.Next(left - 1 + tries);
        Approach(target, list, limits.playback, heard, asked, progress.Stage(0, 0.2)); // of the time that both take
        if (!progress.GoesOn()) return {};
        if (left > 1) list = PeriodChoice(asked, limits.playback, progress).AtPrice(price, progress.Stage(0.2, 1));
    }
    return FitPeriods(asked, limits.playback, kPrices, limits.runBytes, steps, tries).runBytes;
}

} // namespace

Periods SongPeriods(std::span<const float> sound, const Limits& limits, const core::Progress& progress)
{
    auto heard = HeardIn(sound);
    const auto first = std::ranges::find(heard, true) - heard.begin();
    const auto last = std::find(heard.rbegin(), heard.rend(), true).base() - heard.begin();
    if (first >= last) return {};
    sound = sound.subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first));
    heard = Mask(heard.begin() + first, heard.begin() + last);
    const auto target = TargetOf(sound, heard, progress.Stage(0, 0.1)); // of the time
    SilenceBeforeStrikes(sound, limits.playback, heard, progress.Stage(0.1, 0.15));
    core::Steps steps(progress.Stage(0.15, 1));
    return {.runBytes = ListFor(target, heard, limits, steps),
            .start = sound::SecondsAt(static_cast<std::size_t>(first))};
}

} // namespace prepare
