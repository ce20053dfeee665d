#include "Timing.h"

namespace preview {
namespace {

constexpr std::int64_t kLongPeriod = 254; // the byte that doesn't end its period
constexpr std::int64_t kZeroCounts = 256; // steps: the player counts down before it looks

std::int64_t NumberOf(char runByte)
{
    return static_cast<std::uint8_t>(runByte);
}

/// Cycles of one delay step, the call and the counted loop included.
std::int64_t DelayStep(std::uint32_t sampleRate, std::int64_t waits)
{
    if (sampleRate == 6000) return 276 + 24 * waits;
    if (sampleRate == 8000) return 206 + 20 * waits;
    return 156 + 17 * waits;
}

struct Halves {
    std::int64_t first;  // cycles
    std::int64_t second; // cycles
};

Halves HalvesOf(std::int64_t byte, std::int64_t step, std::int64_t waits)
{
    const auto delay = step * (byte == 0 ? kZeroCounts : byte);
    return {.first = delay + (byte == kLongPeriod ? 50 + 7 * waits : 43 + 6 * waits), .second = delay + 57 + 8 * waits};
}

} // namespace

Performance PerformanceOf(const SoundFile& sound, std::int64_t waits)
{
    const auto step = DelayStep(sound.sampleRate, waits);
    Performance performance;
    performance.writes.reserve(2 * sound.runBytes.size());
    for (const char runByte : sound.runBytes) {
        const auto byte = NumberOf(runByte);
        const auto halves = HalvesOf(byte, step, waits);
        performance.writes.push_back({.time = performance.end, .high = true});
        performance.writes.push_back({.time = performance.end + halves.first, .high = byte == kLongPeriod});
        performance.end += halves.first + halves.second;
    }
    return performance;
}

std::vector<Period> PeriodsOf(const SoundFile& sound, std::int64_t waits)
{
    const auto step = DelayStep(sound.sampleRate, waits);
    std::vector<Period> periods;
    bool begins = true;
    for (const char runByte : sound.runBytes) {
        const auto byte = NumberOf(runByte);
        const auto halves = HalvesOf(byte, step, waits);
        if (begins) periods.push_back({.samples = byte == 0 ? kZeroCounts : 0, .cycles = 0});
        periods.back().samples += byte;
        periods.back().cycles += halves.first + halves.second;
        begins = byte != kLongPeriod;
    }
    return periods;
}

double PitchOf(const Period& period, std::uint32_t sampleRate, std::int64_t clock)
{
    const auto inRecording = static_cast<double>(period.samples) / static_cast<double>(sampleRate);
    return inRecording * static_cast<double>(clock) / static_cast<double>(period.cycles);
}

} // namespace preview
