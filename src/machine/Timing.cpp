#include "machine/Timing.h"

#include <numeric>

namespace machine {

double SecondsOf(std::span<const RunByte> runBytes, const Playback& playback)
{
    const auto cycles = std::accumulate(runBytes.begin(), runBytes.end(), std::int64_t{0},
                                        [&](auto sum, auto byte) { return sum + CyclesOf(byte, playback); });
    return SecondsOf(cycles, playback.machine);
}

Performance PerformanceOf(std::span<const RunByte> runBytes, const Playback& playback)
{
    Performance performance;
    performance.writes.reserve(2 * runBytes.size());
    for (const auto byte : runBytes) {
        const auto halves = HalvesOf(byte, playback);
        performance.writes.push_back({.time = performance.end, .high = true});
        performance.writes.push_back({.time = performance.end + halves.first, .high = byte == kStaysHigh});
        performance.end += halves.first + halves.second;
    }
    return performance;
}

std::vector<Period> PeriodsOf(std::span<const RunByte> runBytes, const Playback& playback)
{
    std::vector<Period> periods;
    bool begins = true;
    for (const auto byte : runBytes) {
        if (begins) periods.push_back({.samples = byte == 0 ? kStepsOfZero : 0, .cycles = 0});
        periods.back().samples += byte;
        periods.back().cycles += CyclesOf(byte, playback);
        begins = byte != kStaysHigh;
    }
    return periods;
}

double PitchOf(const Period& period, const Playback& playback)
{
    const auto inRecording = static_cast<double>(period.samples) / playback.rate.hertz;
    return inRecording * static_cast<double>(playback.machine.clock) / static_cast<double>(period.cycles);
}

} // namespace machine
