#include "prepare/Played.h"

#include "machine/Timing.h"

#include <algorithm>
#include <cmath>

namespace prepare {

sound::Samples Played(std::span<const machine::RunByte> runBytes, const machine::Playback& playback,
                      std::size_t samples)
{
    const auto performance = machine::PerformanceOf(runBytes, playback);
    const auto samplesPerCycle = sound::kRate / static_cast<double>(playback.machine.clock);
    sound::Samples wave(samples);
    double now = 0; // in samples
    float level = 0;
    const auto holdUntil = [&](std::int64_t time) {
        const auto until = std::min(static_cast<double>(time) * samplesPerCycle, static_cast<double>(samples));
        while (now < until) {
            const auto next = std::min(until, std::floor(now) + 1);
            wave[static_cast<std::size_t>(now)] += level * static_cast<float>(next - now);
            now = next;
        }
    };
    for (const auto& write : performance.writes) {
        holdUntil(write.time);
        level = write.high ? 1 : -1;
    }
    holdUntil(performance.end);
    return wave;
}

} // namespace prepare
