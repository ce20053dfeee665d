#include "preview/SquareWave.h"

#include "core/WaveHeader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <numbers>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace preview {
namespace {

// The low-pass that an edge goes through: a sinc under a Kaiser window, both symmetrical about the edge.
constexpr int kHalfWidth = 24; // output samples on either side of the edge
constexpr int kTaps = 2 * kHalfWidth + 1;
constexpr double kCutOff = 0.45;     // of the output rate, where it lets half through
constexpr double kWindowShape = 7.5; // the Kaiser window's beta: -76 dB from 0.5 of the output rate on
constexpr int kPhases = 256;         // places of an edge between two samples; what lies between is interpolated

// The weights of the low-pass add up to 2.04 without their signs, so no sequence of edges can reach 32767.
constexpr double kLevel = 16000;
constexpr double kRise = 2 * kLevel;

constexpr std::int64_t kSampleBytes = 2;

/// How much an edge of height 1 changes each sample against the one before, from kHalfWidth - 1 samples before it on.
/// They add up to 1, whatever the phase, so that the level doesn't drift however many edges there are.
using Changes = std::array<double, kTaps>;

/// `samplesAway` from the edge.
double LowPass(double samplesAway)
{
    const auto angle = 2 * std::numbers::pi * kCutOff * samplesAway;
    const auto inWindow = samplesAway / kHalfWidth;
    return (angle == 0 ? 1 : std::sin(angle) / angle) *
           std::cyl_bessel_i(0, kWindowShape * std::sqrt(1 - inWindow * inWindow));
}

/// The step from 0 to 1 at every place p / kPhases from kHalfWidth samples before the edge to as many behind it.
std::vector<double> Step()
{
    constexpr int kPlaces = kHalfWidth * kPhases; // on either side
    std::vector<double> step{0};
    for (int place = -kPlaces; place < kPlaces; ++place)
        step.push_back(step.back() + LowPass((place + 0.5) / kPhases));
    const auto rise = step.back();
    for (auto& height : step)
        height /= rise;
    return step;
}

/// The changes by an edge that lies 0, 1, ... kPhases 256ths of a sample behind sample kHalfWidth - 1 of them.
std::vector<Changes> ChangesByPhase()
{
    const auto step = Step();
    const auto at = [&](int place) {
        return step[static_cast<std::size_t>(std::clamp(place, 0, static_cast<int>(step.size()) - 1))];
    };
    std::vector<Changes> changes(kPhases + 1);
    for (int phase = 0; phase <= kPhases; ++phase)
        for (int tap = 0; tap < kTaps; ++tap)
            changes[static_cast<std::size_t>(phase)][static_cast<std::size_t>(tap)] =
                at((tap + 1) * kPhases - phase) - at(tap * kPhases - phase);
    return changes;
}

/// Where an edge lies: `sample` + `behind`, 0 <= behind < 1.
struct Place {
    std::int64_t sample;
    double behind;
};

Place PlaceOf(std::int64_t time, std::int64_t clock, std::int64_t outputRate)
{
    const auto scaled = time * outputRate; // exact: 65536 run bytes take below 2^34 cycles
    return {.sample = scaled / clock, .behind = static_cast<double>(scaled % clock) / static_cast<double>(clock)};
}

/// How far behind the sample of its place the last change by an edge lies.
constexpr std::int64_t kLastChange = kTaps - kHalfWidth;

const std::vector<Changes>& ByPhase()
{
    static const auto byPhase = ChangesByPhase();
    return byPhase;
}

void AddEdge(double* changes, double behind, double height)
{
    const auto phase = static_cast<std::size_t>(behind * kPhases);
    const auto toNext = behind * kPhases - static_cast<double>(phase);
    const auto& here = ByPhase()[phase];
    const auto& next = ByPhase()[phase + 1];
    for (std::size_t tap = 0; tap < kTaps; ++tap)
        changes[tap] += height * (here[tap] + toNext * (next[tap] - here[tap]));
}

} // namespace

SquareWave::SquareWave(machine::Performance performance, std::int64_t clock, std::int64_t outputRate)
    : performance_(std::move(performance)),
      clock_(clock),
      outputRate_(outputRate)
{
    ByPhase(); // now, since a sound device doesn't wait for it
}

std::int64_t SquareWave::SampleCount() const
{
    return (performance_.end * outputRate_ + clock_ - 1) / clock_;
}

/// Each sample is the one before and its change. So that rounding is the same from wherever one reads, each block
/// begins anew, from the level that the edges before it have led to.
SquareWave::Block SquareWave::BlockAt(std::int64_t first) const
{
    const auto& writes = performance_.writes;
    const auto isOver = [&](const auto& write) {
        return PlaceOf(write.time, clock_, outputRate_).sample + kLastChange < first;
    };
    auto write = std::partition_point(writes.begin(), writes.end(), isOver);
    bool high = write != writes.begin() && std::prev(write)->high;
    double level = high ? kLevel : -kLevel;

    std::array<double, kTaps + kBlock + kTaps> changes{}; // those of edges that reach into the block, from there on
    const auto begin = first - kTaps;
    for (; write != writes.end(); ++write) {
        const auto place = PlaceOf(write->time, clock_, outputRate_);
        const auto offset = place.sample - kHalfWidth + 1 - begin;
        if (offset >= kTaps + kBlock) break;
        if (write->high != high)
            AddEdge(&changes.at(static_cast<std::size_t>(offset)), place.behind, write->high ? kRise : -kRise);
        high = write->high;
    }

    level = std::accumulate(changes.begin(), changes.begin() + kTaps, level);
    Block block{};
    std::transform(changes.begin() + kTaps, changes.begin() + kTaps + kBlock, block.begin(), [&](double change) {
        level += change;
        return static_cast<std::int16_t>(static_cast<int>(level + 32768.5) -
                                         32768); // a sum above 0 rounds as it should
    });
    return block;
}

void SquareWave::Read(std::int64_t first, std::span<std::int16_t> samples) const
{
    while (!samples.empty()) {
        const auto inBlock = first % kBlock;
        const auto block = BlockAt(first - inBlock);
        const auto count = std::min(samples.size(), static_cast<std::size_t>(kBlock - inBlock));
        std::copy_n(block.begin() + inBlock, count, samples.begin());
        samples = samples.subspan(count);
        first += static_cast<std::int64_t>(count);
    }
}

void WriteWave(const machine::Performance& performance, std::int64_t clock, std::int64_t outputRate,
               const files::ByteSink& sink)
{
    const SquareWave wave(performance, clock, outputRate);
    const auto sampleCount = wave.SampleCount();
    sink(core::WaveHeader(kSampleBytes * sampleCount, outputRate, kSampleBytes));

    constexpr std::int64_t kPiece = 4096; // samples
    std::vector<std::int16_t> samples;
    std::string bytes;
    for (std::int64_t first = 0; first < sampleCount; first += kPiece) {
        samples.resize(static_cast<std::size_t>(std::min(kPiece, sampleCount - first)));
        wave.Read(first, samples);
        bytes.resize(kSampleBytes * samples.size());
        auto byte = bytes.begin();
        for (const auto sample : samples) {
            *byte++ = static_cast<char>(sample);
            *byte++ = static_cast<char>(sample >> 8);
        }
        sink(bytes);
    }
}

} // namespace preview
