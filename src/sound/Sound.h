// Sound.h: a decoded sound.
#pragma once

#include <cstddef>
#include <vector>

namespace sound {

inline constexpr int kRate = 22050; // Hz; what a sound is converted to when it is read

using Samples = std::vector<float>; // mono, -1 to 1, at kRate

[[nodiscard]] constexpr double SecondsAt(std::size_t sample)
{
    return static_cast<double>(sample) / kRate;
}

[[nodiscard]] constexpr std::size_t SamplesIn(double seconds)
{
    return static_cast<std::size_t>(seconds * kRate);
}

} // namespace sound
