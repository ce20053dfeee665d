// OneVoice.h: whether a sound is one voice alone, whose melody is all there is of it.
#pragma once

#include "core/Progress.h"

#include <span>
#include <vector>

namespace prepare {

/// Of a sound and its PitchTrack. It is where nearly all that sounds lies on the partials of the pitch nearly all the
/// time.
[[nodiscard]] bool IsOneVoice(std::span<const float> sound, const std::vector<float>& track,
                              const core::Progress& progress);

} // namespace prepare
