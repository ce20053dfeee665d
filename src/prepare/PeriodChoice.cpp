#include "prepare/PeriodChoice.h"

#include "sound/Sound.h"

#include <algorithm>
#include <cmath>

namespace prepare {
namespace {

constexpr double kLongestPeriod = 0.010; // seconds; no band of a target lies lower
constexpr double kDeepSilence = 0.030;   // seconds from what is to be heard

// Of a millisecond of deep silence that is spent in periods: on a machine of 10 MHz the longest period takes as long as
// a 254, and pauses would be filled with either. Measured, as all numbers here that don't follow from others:
// docs/listening.md.
constexpr float kSilenceCost = 0.1F;

/// What stands in `from_`: the byte that leads to a place, and how many cycles its end lies behind the place's start.
constexpr std::int32_t kByteBits = 8;
constexpr std::int32_t kByteMask = (1 << kByteBits) - 1;

constexpr float kNever = -1e30F; // less than any sum of scores

constexpr std::size_t kColumnsPerLook = 2048; // at whether to go on: a few ms of work

/// The sum of the first i samples, in ms times level, and at every second place what their silence costs.
struct Integrals {
    std::vector<double> wave{0};
    std::vector<double> silence{0};
};

Integrals IntegralsOf(std::span<const float> target)
{
    constexpr double kSampleMs = 1000.0 / sound::kRate;
    constexpr std::ptrdiff_t kDeep = sound::SamplesIn(kDeepSilence);
    Integrals sums;
    sums.wave.reserve(target.size() + 1);
    sums.silence.resize(target.size() + 1);
    for (const auto level : target)
        sums.wave.push_back(sums.wave.back() + kSampleMs * level);
    const auto heard = [](float level) { return level != 0; };
    for (auto quiet = target.begin(); quiet != target.end();) {
        const auto sound = std::find_if(quiet, target.end(), heard);
        for (auto sample = quiet + std::min(kDeep, sound - quiet); sample < sound - kDeep; ++sample)
            sums.silence[static_cast<std::size_t>(sample - target.begin()) + 1] = kSampleMs * kSilenceCost;
        quiet = std::find(sound, target.end(), 0.0F);
    }
    for (std::size_t i = 1; i < sums.silence.size(); ++i)
        sums.silence[i] += sums.silence[i - 1];
    return sums;
}

double At(const std::vector<double>& sums, double sample)
{
    const auto i = static_cast<std::size_t>(sample);
    if (i + 1 >= sums.size()) return sums.back();
    return sums[i] + (sample - static_cast<double>(i)) * (sums[i + 1] - sums[i]);
}

} // namespace

PeriodChoice::PeriodChoice(std::span<const float> target, const machine::Playback& playback,
                           const core::Progress& progress)
    : playback_(playback),
      step_(machine::StepCycles(playback)),
      steps_(target.size() * static_cast<std::size_t>(playback.machine.clock) / sound::kRate /
             static_cast<std::size_t>(2 * step_)),
      longest_(static_cast<std::int32_t>(std::clamp<std::int64_t>(
          std::llround(kLongestPeriod * static_cast<double>(playback.machine.clock)) / (2 * step_),
          machine::kShortestPeriod, machine::kLongestPeriod))),
      mids_(kPlaces * 2 * Columns()),
      ends_(2 * kPlaces * Columns()),
      silence_(Columns()),
      score_(kStarts * Columns()),
      from_(score_.size())
{
    const auto sums = IntegralsOf(target);
    const auto samplesPerCycle = sound::kRate / static_cast<double>(playback.machine.clock);
    const auto samplesPerPlace = samplesPerCycle * static_cast<double>(step_) / kPlaces;
    for (std::size_t i = 0; i < Columns() && (i % kColumnsPerLook != 0 || progress.GoesOn()); ++i)
        for (std::size_t place = 0; place < 2 * kPlaces; ++place) {
            const auto sample = samplesPerPlace * static_cast<double>(2 * kPlaces * i + place);
            const auto wave = At(sums.wave, sample);
            const auto silence = At(sums.silence, sample);
            if (place == 0) silence_[i] = static_cast<float>(silence);
            ends_[place * Columns() + i] = static_cast<float>(wave + silence);
            mids_[(place % kPlaces) * 2 * Columns() + 2 * i + place / kPlaces] = static_cast<float>(2 * wave);
        }
}

/// When a period begins that starts at a state.
std::int64_t PeriodChoice::TimeOf(std::size_t state) const
{
    return static_cast<std::int64_t>(state % Columns()) * 2 * step_ + (from_[state] >> kByteBits);
}

std::size_t PeriodChoice::StateOf(std::int64_t time) const
{
    return IndexOf(time, 2 * step_, kStarts, Columns());
}

/// The place of `time` in a table whose rows lie `unit` cycles divided by `rows` apart, and its columns `unit` cycles.
std::size_t PeriodChoice::IndexOf(std::int64_t time, std::int64_t unit, std::size_t rows, std::size_t columns)
{
    const auto row = static_cast<std::size_t>(time % unit) * rows / static_cast<std::size_t>(unit);
    return row * columns + static_cast<std::size_t>(time / unit);
}

/// Takes a place that is reached by `byte` with that score, if it is the best way there so far.
void PeriodChoice::Reach(std::int64_t time, machine::RunByte byte, float score)
{
    const auto state = StateOf(time);
    if (score <= score_[state]) return;
    score_[state] = score;
    from_[state] = static_cast<std::int32_t>((time % (2 * step_)) << kByteBits | byte);
}

/// All periods of 2 to `longest_` that begin at `time`. What a period that is a step longer looks up and where it leads
/// lies one farther in each table, so that the compiler makes it a loop over vectors.
void PeriodChoice::Spread(std::int64_t time, float base)
{
    const auto shortest = machine::HalvesOf(machine::kShortestPeriod, playback_);
    const auto end = time + shortest.first + shortest.second;
    const auto state = StateOf(end);
    const float* const __restrict mids = &mids_[IndexOf(time + shortest.first, step_, kPlaces, 2 * Columns())];
    const float* const __restrict ends = &ends_[IndexOf(end, 2 * step_, 2 * kPlaces, Columns())];
    float* const __restrict score = &score_[state];
    std::int32_t* const __restrict from = &from_[state];
    const auto first = static_cast<std::int32_t>((end % (2 * step_)) << kByteBits | machine::kShortestPeriod);
    const auto count = longest_ - machine::kShortestPeriod + 1;
    for (std::int32_t i = 0; i < count; ++i) {
        const auto sum = base + mids[i] - ends[i];
        const std::int32_t better = sum > score[i] ? -1 : 0; // a mask and no branch, for the vectors' sake
        score[i] = std::max(score[i], sum);
        from[i] = ((first + i) & better) | (from[i] & ~better);
    }
}

machine::RunBytes PeriodChoice::AtPrice(float price, const core::Progress& progress)
{
    const auto silent = machine::CyclesOf(machine::kStaysHigh, playback_);
    std::ranges::fill(score_, kNever);
    score_[0] = 0;
    from_[0] = 0;
    for (std::size_t step = 0; step < steps_; ++step) {
        if (step % kColumnsPerLook == 0 && !progress.GoesOn(step, steps_)) return {};
        for (auto state = step; state < score_.size(); state += Columns()) {
            if (score_[state] == kNever) continue;
            const auto time = TimeOf(state);
            const auto base = score_[state] - price;
            const auto end = ends_[IndexOf(time, 2 * step_, 2 * kPlaces, Columns())]; // of the period before
            Spread(time, base - (end - 2 * silence_[step]));
            Reach(time + silent, machine::kStaysHigh, base);
        }
    }
    return WayBack();
}

/// The bytes that lead to the best place near the end.
machine::RunBytes PeriodChoice::WayBack() const
{
    std::int64_t time = 0;
    float best = kNever;
    const auto first = steps_ - std::min(steps_, static_cast<std::size_t>(longest_));
    for (auto step = first; step < Columns(); ++step)
        for (auto state = step; state < score_.size(); state += Columns()) {
            if (score_[state] <= best) continue;
            best = score_[state];
            time = TimeOf(state);
        }
    machine::RunBytes bytes;
    while (time > 0) {
        bytes.push_back(static_cast<machine::RunByte>(from_[StateOf(time)] & kByteMask));
        time -= machine::CyclesOf(bytes.back(), playback_);
    }
    const auto isSilence = [](auto byte) { return byte == machine::kStaysHigh; };
    bytes.erase(bytes.begin(), std::ranges::find_if_not(bytes, isSilence)); // at the end, where nobody misses it
    std::ranges::reverse(bytes);
    return bytes;
}

FittedPeriods FitPeriods(std::span<const float> target, const machine::Playback& playback, Prices prices,
                         std::size_t mostBytes, core::Steps& steps, int others)
{
    constexpr int kTries = 7;
    constexpr int kMostlyTries = 3;  // until it is full; what progress is told by
    constexpr double kFull = 0.985;  // of the bytes asked for is as good as all
    constexpr double kInside = 0.02; // of the way: the ends themselves have been tried
    const auto most = static_cast<double>(mostBytes);
    const auto first = steps.Next(others);
    PeriodChoice choice(target, playback, first);
    FittedPeriods tooLong{.runBytes = choice.AtPrice(prices.least, first), .price = prices.least};
    if (tooLong.runBytes.size() <= mostBytes) return tooLong;
    FittedPeriods fit{.runBytes = choice.AtPrice(prices.most, steps.Next(kMostlyTries + 2 * others)),
                      .price = prices.most};
    if (fit.runBytes.size() > mostBytes) return fit;
    for (int tries = 0; tries < kTries && static_cast<double>(fit.runBytes.size()) < kFull * most; ++tries) {
        // The size goes about with the price's logarithm.
        const auto wanted = (1 + kFull) / 2 * most;
        const auto above = static_cast<double>(tooLong.runBytes.size());
        const auto below = static_cast<double>(fit.runBytes.size());
        const auto share = static_cast<float>(std::clamp((above - wanted) / (above - below), kInside, 1 - kInside));
        const auto price = tooLong.price * std::pow(fit.price / tooLong.price, share);
        const auto progress = steps.Next(std::max(0, kMostlyTries - tries - 1) + 2 * others);
        FittedPeriods tried{.runBytes = choice.AtPrice(price, progress), .price = price};
        if (progress.IsStopped()) break;
        (tried.runBytes.size() > mostBytes ? tooLong : fit) = std::move(tried);
    }
    return fit;
}

} // namespace prepare
