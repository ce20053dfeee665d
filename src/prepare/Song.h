// Song.h: music of several voices as periods of a square wave: chords, bass, melody and rhythm at once.
//     target    each band of it as loud as the others, partials a little louder than what lies between them, and every
//               moment as loud as the others
//     strikes   a moment of silence before each: what carries the rhythm
//     rounds    the target takes the phases of the wave that was chosen, and gives less where that has too much. The
//               product of two magnitudes is convex in the wave, so each choice can only raise it (Griffin, Lim: Signal
//               estimation from modified short-time Fourier transform, 1984, by another projection)
// Measured: docs/listening.md. What is silent before the first sound and behind the last is left out.
#pragma once

#include "core/Progress.h"
#include "prepare/Periods.h"

#include <span>

namespace prepare {

/// No more run bytes than are worth it. Where it can't be heard in so few as are asked for, the list is longer: the
/// shortest that is still worth hearing.
[[nodiscard]] Periods SongPeriods(std::span<const float> sound, const Limits& limits, const core::Progress& progress);

} // namespace prepare
