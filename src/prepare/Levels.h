// Levels.h: how loud a sound is: as amplitudes, or as powers, which are their squares. So -20 dB are a tenth of an
// amplitude and a hundredth of a power.
#pragma once

#include "sound/Sound.h"

#include <span>
#include <vector>

namespace prepare {

using Amplitudes = std::vector<float>;
using Powers = std::vector<float>;

/// Within which a level is taken: two periods of the lowest tone that is played, or the level would follow its wave.
inline constexpr double kMoment = 0.020; // seconds

/// Where something is to be heard: one for each sample.
using Mask = std::vector<bool>;

/// The value that a share of all values don't exceed; 0 of none.
[[nodiscard]] float Quantile(std::vector<float> values, double share);

/// How loud the loud moments are: 95 percent of all moments are no louder, the silent ones left out: those 50 dB below
/// the loudest, and for powers those 25 dB below. Measured: docs/listening.md.
[[nodiscard]] float LoudAmplitude(const Amplitudes& moments);
[[nodiscard]] float LoudPower(const Powers& moments);

[[nodiscard]] float AmplitudeOf(double decibels);

/// The amplitude around each sample, its root mean square in a window that is a triangle of so many seconds.
[[nodiscard]] Amplitudes Envelope(std::span<const float> sound, double seconds);

} // namespace prepare
