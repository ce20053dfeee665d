// Sound.h: a decoded sound.
#pragma once

#include <cstddef>
#include <vector>

namespace prepare {

inline constexpr int kSoundRate = 22050; // Hz; what a sound is converted to when it is read

using Sound = std::vector<float>; // mono, -1 to 1, at kSoundRate

/// Where something is to be heard in a sound: one for each sample.
using Mask = std::vector<bool>;

[[nodiscard]] constexpr double SecondsAt(std::size_t sample)
{
    return static_cast<double>(sample) / kSoundRate;
}

[[nodiscard]] constexpr std::size_t SamplesIn(double seconds)
{
    return static_cast<std::size_t>(seconds * kSoundRate);
}

} // namespace prepare
