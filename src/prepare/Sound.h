// Sound.h: a decoded sound, and what it is prepared for.
#pragma once

#include <functional>
#include <vector>

namespace prepare {

inline constexpr int kSoundRate = 22050; // Hz; what a sound is converted to when it is read

using Sound = std::vector<float>; // mono, -1 to 1, at kSoundRate

/// Told now and then which part of the work is done, 0 to 1.
using Progress = std::function<void(double done)>;

} // namespace prepare
