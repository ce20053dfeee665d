// Strikes.h: where something is struck: a drum, a string, a key. Spectral flux in bands, against what was there before
// in the band or its neighbours, so that a vibrato isn't taken for strikes (Böck, Widmer: Maximum filter vibrato
// suppression for onset detection, 2013). Measured: docs/listening.md.
#pragma once

#include "core/Progress.h"

#include <cstddef>
#include <span>
#include <vector>

namespace prepare {

/// The samples at which they begin, 90 ms apart at least.
[[nodiscard]] std::vector<std::size_t> Strikes(std::span<const float> sound, const core::Progress& progress);

} // namespace prepare
