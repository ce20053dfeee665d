#include "studio/Waveform.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>

namespace studio {
namespace {

Peak Both(const Peak& one, const Peak& other)
{
    if (!one.IsThere()) return other;
    if (!other.IsThere()) return one;
    return {.low = std::min(one.low, other.low), .high = std::max(one.high, other.high)};
}

/// Of all lanes of a processor at once: a long sound has a hundred million samples.
Peak PeakOf(std::span<const float> samples)
{
    constexpr std::size_t kLanes = 8;
    std::array<float, kLanes> lows;
    std::array<float, kLanes> highs;
    lows.fill(samples.front());
    highs.fill(samples.front());
    const auto take = [&](std::size_t lane, float sample) {
        lows[lane] = sample < lows[lane] ? sample : lows[lane];
        highs[lane] = sample > highs[lane] ? sample : highs[lane];
    };
    for (; samples.size() >= kLanes; samples = samples.subspan(kLanes))
        for (std::size_t lane = 0; lane < kLanes; ++lane)
            take(lane, samples[lane]);
    for (const auto sample : samples)
        take(0, sample);
    return {.low = *std::ranges::min_element(lows), .high = *std::ranges::max_element(highs)};
}

} // namespace

void Waveform::Take(std::span<const float> samples)
{
    while (!samples.empty()) {
        const auto inBin = samples_ % perBin_; // that the last bin has
        if (inBin == 0 && bins_.size() == kMostBins) {
            for (std::size_t k = 0; k < kMostBins / 2; ++k)
                bins_[k] = Both(bins_[2 * k], bins_[2 * k + 1]);
            bins_.resize(kMostBins / 2);
            perBin_ *= 2;
            continue;
        }
        if (inBin == 0) bins_.emplace_back();
        const auto count = std::min(static_cast<std::size_t>(perBin_ - inBin), samples.size());
        bins_.back() = Both(bins_.back(), PeakOf(samples.first(count)));
        samples_ += static_cast<std::int64_t>(count);
        samples = samples.subspan(count);
    }
}

Span Waveform::Covered() const
{
    return {.from = from_, .to = from_ + static_cast<double>(samples_) / static_cast<double>(rate_)};
}

double Waveform::SecondsPerBin() const
{
    return static_cast<double>(perBin_) / static_cast<double>(rate_);
}

std::vector<Peak> Waveform::Columns(const Span& span, std::size_t columns) const
{
    assert(span.Length() > 0);
    std::vector<Peak> peaks(columns);
    const auto binOf = [&](std::size_t column) {
        const auto seconds = span.from + span.Length() * static_cast<double>(column) / static_cast<double>(columns);
        return (seconds - from_) / SecondsPerBin();
    };
    const auto end = static_cast<double>(samples_) / static_cast<double>(perBin_);
    for (std::size_t k = 0; k < columns; ++k) {
        const auto from = std::max(binOf(k), 0.0);
        const auto to = std::min(binOf(k + 1), end);
        if (from >= to) continue;
        const auto first = static_cast<std::size_t>(from);
        const auto behind = std::min(std::max(static_cast<std::size_t>(std::ceil(to)), first + 1), bins_.size());
        for (auto bin = first; bin < behind; ++bin)
            peaks[k] = Both(peaks[k], bins_[bin]);
    }
    return peaks;
}

double Waveform::FirstAbove(float level) const
{
    const auto loud =
        std::ranges::find_if(bins_, [&](const Peak& peak) { return std::max(peak.high, -peak.low) >= level; });
    return std::min(from_ + SecondsPerBin() * static_cast<double>(loud - bins_.begin()), Covered().to);
}

} // namespace studio
