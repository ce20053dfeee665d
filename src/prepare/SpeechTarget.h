// SpeechTarget.h: sounds made lists of run bytes, each list the one whose square wave, on the machine's own clock, is
// most like the sound.
//     speech    every band of it as loud as the others and every moment as loud as the others, so that the few periods
//               there are go to what tells words apart; noise, hum and single clicks are taken out, pauses are silent.
//               From there on what SpeechLikeness.h measures draws the target
//     sound     what isn't speech and isn't a tune: the same, but its bands as loud as they are, with its clicks, and
//               silent before strikes
// What is silent before the first sound and behind the last is left out.
#pragma once

#include "core/Progress.h"
#include "prepare/Periods.h"

#include <span>

namespace prepare {

/// For `sound`, no more run bytes than are worth it. Where it can't be heard in so few as are asked for, the list is
/// longer: the shortest that is still worth hearing.
[[nodiscard]] Periods SpeechPeriods(std::span<const float> sound, Noise noise, const Limits& limits,
                                    const core::Progress& progress);
[[nodiscard]] Periods SoundPeriods(std::span<const float> sound, Noise noise, const Limits& limits,
                                   const core::Progress& progress);

} // namespace prepare
