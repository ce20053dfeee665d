// RunBytes.h: what the player is given to play, byte by byte. What a byte N means, and how long it lasts:
//     byte        at the port, delay steps      in the recording, samples
//     2 to 253    N high, N low                 a period of N
//     254         254 high, 254 more high       254 of a period that goes on in the next byte; by themselves 254s are
//                                               silence, whatever their number
//     1           1 high, 1 low                 1, the rest of a long period: stands behind a 254 only
//     0           256 high, 256 low             none, the rest of a period of exactly 254; elsewhere 256
//     255         nothing: the end mark, once, behind all others
//
//     from one write to the next, in cycles of the Z80   W = 0 or 1: the cycles that it waits at each opcode fetch
//         high, N        N D + 43 + 6 W                  D, one delay step: stepCycles + stepFetches W, by the rate
//         high, 254    254 D + 50 + 7 W
//         low, N         N D + 57 + 8 W
// The second half of a 254 takes as long as a low one.
#pragma once

#include "machine/SampleRates.h"

#include <cstdint>
#include <vector>

namespace machine {

using RunByte = std::uint8_t;
using RunBytes = std::vector<RunByte>; // without the end mark, where nothing else is said

inline constexpr RunByte kShortestPeriod = 2; // in a single byte, which is its samples; so is the longest
inline constexpr RunByte kLongestPeriod = 253;
inline constexpr RunByte kStaysHigh = 254;
inline constexpr RunByte kEndMark = 255;
inline constexpr std::int64_t kStepsOfZero = 256; // the player counts down before it looks

struct Machine {
    std::int64_t clock = 3'580'000; // Hz
    std::int64_t waits = 1;         // cycles at each opcode fetch, 0 or 1
};

/// Which player plays on which machine.
struct Playback {
    SampleRate rate; // of the recording
    Machine machine;
};

/// Of one delay step.
[[nodiscard]] constexpr std::int64_t StepCycles(const Playback& playback)
{
    return playback.rate.stepCycles + playback.rate.stepFetches * playback.machine.waits;
}

/// The port's two levels of one run byte.
struct Halves {
    std::int64_t first;  // cycles
    std::int64_t second; // cycles
};

/// Requires: `byte` isn't the end mark.
[[nodiscard]] constexpr Halves HalvesOf(RunByte byte, const Playback& playback)
{
    const auto waits = playback.machine.waits;
    const auto delay = StepCycles(playback) * (byte == 0 ? kStepsOfZero : byte);
    return {.first = delay + (byte == kStaysHigh ? 50 + 7 * waits : 43 + 6 * waits), .second = delay + 57 + 8 * waits};
}

/// Of both halves.
[[nodiscard]] constexpr std::int64_t CyclesOf(RunByte byte, const Playback& playback)
{
    const auto halves = HalvesOf(byte, playback);
    return halves.first + halves.second;
}

[[nodiscard]] constexpr double SecondsOf(std::int64_t cycles, const Machine& machine)
{
    return static_cast<double>(cycles) / static_cast<double>(machine.clock);
}

} // namespace machine
