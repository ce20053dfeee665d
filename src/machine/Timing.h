// Timing.h: when the player writes to its port, worked out from the run bytes alone.
//     port  C0  ----------+          +------          for a byte N two writes: C0 at its start, and then
//           40            +----------+                     40, or C0 again where N is 254: the signal stays up
//               high, N      low, N    next byte           N is 256 for the byte 0
//
//     from one write to the next, in cycles of the Z80   W = 0 or 1: the cycles that it waits at each opcode fetch
//         high, N        N D + 43 + 6 W                  D, one delay step: stepCycles + stepFetches W, by the rate
//         high, 254    254 D + 50 + 7 W
//         low, N         N D + 57 + 8 W
// The second half of a 254 takes as long as a low one. Behind the last byte nothing is written any more: the sound ends
// where the next write would have been.
//
// A period begins where the port rises and takes in all 254s up to and with the next other byte, or the end of the
// sound. In the recording it lasted as many samples as its bytes add up to; a 0 that doesn't follow a 254 counts 256.
// So 254, 0 stands for 254 samples, though it plays as long as 510.
#pragma once

#include "machine/SampleRates.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace machine {

struct Machine {
    std::int64_t clock = 3'580'000; // Hz
    std::int64_t waits = 1;         // cycles at each opcode fetch, 0 or 1
};

/// The port's two levels of one run byte.
struct Halves {
    std::int64_t first;  // cycles
    std::int64_t second; // cycles
};

struct PortWrite {
    std::int64_t time; // cycles since the first write
    bool high;         // C0, else 40
};

struct Performance {
    std::vector<PortWrite> writes; // two for each run byte
    std::int64_t end = 0;          // cycles since the first write
};

struct Period {
    std::int64_t samples; // in the recording
    std::int64_t cycles;  // on the machine
};

/// Of a run byte, 0 to 254.
[[nodiscard]] Halves HalvesOf(std::int64_t byte, const SampleRate& rate, std::int64_t waits);

/// Of `runBytes`, which are without the end mark.
[[nodiscard]] Performance PerformanceOf(std::string_view runBytes, const SampleRate& rate, std::int64_t waits);
[[nodiscard]] std::vector<Period> PeriodsOf(std::string_view runBytes, const SampleRate& rate, std::int64_t waits);

/// How many times as high as in the recording the machine plays a period: 1 is the same pitch, 0.5 an octave lower.
[[nodiscard]] double PitchOf(const Period& period, const SampleRate& rate, std::int64_t clock);

} // namespace machine
