#include "machine/Timing.h"

namespace machine {
namespace {

constexpr std::int64_t kLongPeriod = 254; // the byte that doesn't end its period
constexpr std::int64_t kZeroCounts = 256; // steps: the player counts down before it looks

std::int64_t NumberOf(char runByte)
{
    return static_cast<std::uint8_t>(runByte);
}

} // namespace

Halves HalvesOf(std::int64_t byte, const SampleRate& rate, std::int64_t waits)
{
    const auto step = rate.stepCycles + rate.stepFetches * waits;
    const auto delay = step * (byte == 0 ? kZeroCounts : byte);
    return {.first = delay + (byte == kLongPeriod ? 50 + 7 * waits : 43 + 6 * waits), .second = delay + 57 + 8 * waits};
}

Performance PerformanceOf(std::string_view runBytes, const SampleRate& rate, std::int64_t waits)
{
    Performance performance;
    performance.writes.reserve(2 * runBytes.size());
    for (const char runByte : runBytes) {
        const auto byte = NumberOf(runByte);
        const auto halves = HalvesOf(byte, rate, waits);
        performance.writes.push_back({.time = performance.end, .high = true});
        performance.writes.push_back({.time = performance.end + halves.first, .high = byte == kLongPeriod});
        performance.end += halves.first + halves.second;
    }
    return performance;
}

std::vector<Period> PeriodsOf(std::string_view runBytes, const SampleRate& rate, std::int64_t waits)
{
    std::vector<Period> periods;
    bool begins = true;
    for (const char runByte : runBytes) {
        const auto byte = NumberOf(runByte);
        const auto halves = HalvesOf(byte, rate, waits);
        if (begins) periods.push_back({.samples = byte == 0 ? kZeroCounts : 0, .cycles = 0});
        periods.back().samples += byte;
        periods.back().cycles += halves.first + halves.second;
        begins = byte != kLongPeriod;
    }
    return periods;
}

double PitchOf(const Period& period, const SampleRate& rate, std::int64_t clock)
{
    const auto inRecording = static_cast<double>(period.samples) / rate.hertz;
    return inRecording * static_cast<double>(clock) / static_cast<double>(period.cycles);
}

} // namespace machine
