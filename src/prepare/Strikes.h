// Strikes.h: where something is struck: a drum, a string, a key. A moment of silence before it is what carries the
// rhythm of a square wave, which is always as loud. Spectral flux in bands, against what was there before
// in the band or its neighbours, so that a vibrato isn't taken for strikes (Böck, Widmer: Maximum filter vibrato
// suppression for onset detection, 2013). Measured: docs/listening.md.
#pragma once

#include "core/Progress.h"
#include "machine/RunBytes.h"
#include "prepare/Levels.h"

#include <span>

namespace prepare {

/// Takes the moment before each strike in `sound` out of what is heard of it: a byte 254 fits into it.
void SilenceBeforeStrikes(std::span<const float> sound, const machine::Playback& playback, Mask& heard,
                          const core::Progress& progress);

} // namespace prepare
