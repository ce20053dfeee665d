// Timing.h: when the player writes to its port, worked out from the run bytes alone; RunBytes.h has the times.
//     port  C0  ----------+          +------          for a byte N two writes: C0 at its start, and then
//           40            +----------+                     40, or C0 again where N is 254: the signal stays up
//               high, N      low, N    next byte
// Behind the last byte nothing is written any more: the sound ends where the next write would have been.
//
// A period begins where the port rises and takes in all 254s up to and with the next other byte, or the end of the
// sound. In the recording it lasted as many samples as its bytes add up to; a 0 that doesn't follow a 254 counts 256.
// So 254, 0 stands for 254 samples, though it plays as long as 510.
#pragma once

#include "machine/RunBytes.h"

#include <cstdint>
#include <span>
#include <vector>

namespace machine {

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

/// How long the sound is.
[[nodiscard]] double SecondsOf(std::span<const RunByte> runBytes, const Playback& playback);

[[nodiscard]] Performance PerformanceOf(std::span<const RunByte> runBytes, const Playback& playback);
[[nodiscard]] std::vector<Period> PeriodsOf(std::span<const RunByte> runBytes, const Playback& playback);

/// How many times as high as in the recording the machine plays a period: 1 is the same pitch, 0.5 an octave lower.
[[nodiscard]] double PitchOf(const Period& period, const Playback& playback);

} // namespace machine
