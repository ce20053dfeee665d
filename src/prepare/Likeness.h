// Likeness.h: the target of a sound that isn't speech moved towards what a square wave can do, by iterative phase
// projection (Griffin, Lim: Signal estimation from modified short-time Fourier transform, 1984): there onto the sounds,
// here onto the lists of periods. Bands, steps and bounds are measured: docs/listening.md.
#pragma once

#include "core/Progress.h"
#include "machine/RunBytes.h"
#include "prepare/Levels.h"

#include <span>

namespace prepare {

// Where a target's levels lie. Beside the bands that carry words a square wave has next to no room; measured.
inline constexpr double kLowest = 100;   // Hz
inline constexpr double kHighest = 5500; // Hz

inline constexpr int kApproaches = 3; // that Approach makes; more of them hardly make it better

/// Gives all moments of `target` that are `heard` the same level, and silences the others.
void LevelMoments(const Mask& heard, sound::Samples& target);

/// `target` as a square wave gets nearer to it. Nobody hears phases: they become those of the wave that was chosen at
/// `price`; and what the wave lacks in a band at a moment is asked for louder, what it has too much of softer. Leaves
/// room for `others` behind its own steps.
[[nodiscard]] sound::Samples Approach(const sound::Samples& target, const machine::Playback& playback, float price,
                                      core::Steps& steps, int others);

} // namespace prepare
