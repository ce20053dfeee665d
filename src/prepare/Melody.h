// Melody.h: the melody of a sound as periods of a square wave, one voice.
//     tone       periods of its pitch on the machine's own clock. A count is too coarse for one to be exact: each is a
//                count or so longer or shorter, by dither, and makes up for some of what those before it are late, by
//                error feedback (Lipshitz, Wannamaker, Vanderkooy: Quantization and dither, 1992), so that pitch and
//                time are exact. Always the nearest count would be a pattern, and the ear takes that for a tone of its
//                own, an octave or more below. Measured: docs/listening.md.
//     silence    254s, which keep the port high: whole ones, so a tone that follows may be 12 to 22 ms early or late,
//                but none is later because of those before it
//     too long   each note keeps its beginning only, the same part of all: down to two fifths, which still is the tune
// What is silent before the first tone and behind the last is left out.
#pragma once

#include "core/Progress.h"
#include "prepare/Periods.h"

#include <vector>

namespace prepare {

/// Of a sound's PitchTrack. Where it can't be heard in so few run bytes as are asked for, the list is longer: the
/// shortest that is still the tune.
[[nodiscard]] Periods MelodyPeriods(const std::vector<float>& track, const Limits& limits,
                                    const core::Progress& progress);

} // namespace prepare
