// Levels.h: how loud a sound is.
#pragma once

#include <vector>

namespace prepare {

using Levels = std::vector<float>; // one for each sample, or for each frame of a spectrum

/// The value that a share of all values don't exceed; 0 of none.
[[nodiscard]] float Quantile(Levels values, double share);

/// How loud the loud moments are: 95 percent of all but the silent ones are no louder.
[[nodiscard]] float Loud(const Levels& levels);

[[nodiscard]] float AmplitudeOf(double decibels);

/// The level around each sample, in a window that is a triangle of so many seconds.
[[nodiscard]] Levels Envelope(const Levels& sound, double seconds);

} // namespace prepare
