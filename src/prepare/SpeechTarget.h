// SpeechTarget.h: sounds made lists of run bytes, each list the one whose square wave, on the machine's own clock, is
// most like the sound.
//     speech    every band of it as loud as the others and every moment as loud as the others, so that the few periods
//               there are go to what tells words apart; noise and hum are taken out, pauses are silent
//     sound     what isn't speech and isn't a tune: the same, but its bands as loud as they are
// What is silent before the first sound and behind the last is left out.
#pragma once

#include "machine/RunBytes.h"
#include "prepare/Sound.h"

#include <cstddef>
#include <span>

namespace prepare {

/// The run bytes for `sound`, without the end mark: no more than are worth it, and no more than `mostRunBytes`; empty
/// where nothing is to be heard. Where it can't be heard in so few, the list is longer than `mostRunBytes`: the
/// shortest that is still worth hearing.
[[nodiscard]] machine::RunBytes SpeechPeriods(std::span<const float> sound, const machine::Playback& playback,
                                              std::size_t mostRunBytes, const Progress& progress);
[[nodiscard]] machine::RunBytes SoundPeriods(std::span<const float> sound, const machine::Playback& playback,
                                             std::size_t mostRunBytes, const Progress& progress);

} // namespace prepare
