#include "preview/SquareWave.h"

#include "core/WaveHeader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
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

constexpr std::int64_t kBlock = 4096; // samples
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

void AddEdge(double* changes, double behind, double height)
{
    static const auto byPhase = ChangesByPhase();
    const auto phase = static_cast<std::size_t>(behind * kPhases);
    const auto toNext = behind * kPhases - static_cast<double>(phase);
    const auto& here = byPhase[phase];
    const auto& next = byPhase[phase + 1];
    for (std::size_t tap = 0; tap < kTaps; ++tap)
        changes[tap] += height * (here[tap] + toNext * (next[tap] - here[tap]));
}

/// The bytes of a block of samples, each the one before and its change. `level` goes from block to block; `changes`
/// goes on to what lies behind the block.
void TakeBlock(std::vector<double>& changes, double& level, std::string& bytes)
{
    bytes.resize(kSampleBytes * kBlock);
    auto byte = bytes.begin();
    for (auto change = changes.begin(); change != changes.begin() + kBlock; ++change) {
        level += *change;
        const auto sample = static_cast<int>(level + 32768.5) - 32768; // rounds as it should where the sum is positive
        *byte++ = static_cast<char>(sample);
        *byte++ = static_cast<char>(sample >> 8);
    }
    std::copy(changes.begin() + kBlock, changes.end(), changes.begin());
    std::fill(changes.begin() + kTaps, changes.end(), 0.0);
}

} // namespace

void WriteWave(const machine::Performance& performance, std::int64_t clock, std::int64_t outputRate,
               const files::ByteSink& sink)
{
    const auto sampleCount = (performance.end * outputRate + clock - 1) / clock;
    sink(core::WaveHeader(kSampleBytes * sampleCount, outputRate, kSampleBytes));

    std::vector<double> changes(kBlock + kTaps); // what edges do to a block, and to the samples behind it
    std::string bytes;
    double level = -kLevel;
    bool high = false;
    auto write = performance.writes.begin();
    // The first edge begins to show before sample 0.
    for (std::int64_t first = -kHalfWidth; first < sampleCount; first += kBlock) {
        for (; write != performance.writes.end(); ++write) {
            const auto place = PlaceOf(write->time, clock, outputRate);
            const auto offset = place.sample - kHalfWidth + 1 - first;
            if (offset >= kBlock) break;
            if (write->high != high) AddEdge(changes.data() + offset, place.behind, write->high ? kRise : -kRise);
            high = write->high;
        }
        TakeBlock(changes, level, bytes);
        const auto unheard = first < 0 ? kHalfWidth : 0;
        const auto size = std::min(kBlock, sampleCount - first) - unheard;
        sink({bytes.data() + kSampleBytes * unheard, static_cast<std::size_t>(kSampleBytes * size)});
    }
}

} // namespace preview
