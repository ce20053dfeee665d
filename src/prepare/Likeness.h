// Likeness.h: a target moved towards what a square wave can do.
#pragma once

#include "machine/RunBytes.h"
#include "prepare/Levels.h"
#include "prepare/Sound.h"

#include <span>

namespace prepare {

// Where a target's levels lie. Beside the bands that carry words a square wave has next to no room.
inline constexpr double kLowest = 100;   // Hz
inline constexpr double kHighest = 5500; // Hz

/// Gives all moments of `target` where `heard` isn't 0 the same level, and silences the others.
void LevelMoments(std::span<const float> heard, Levels& target);

/// `target` as a square wave gets nearer to it. Nobody hears phases: they become those of the wave that was chosen at
/// `price`; and what the wave lacks in a band at a moment is asked for louder, what it has too much of softer.
[[nodiscard]] Levels Approach(const Levels& target, const machine::Playback& playback, float price);

} // namespace prepare
