// Played.h: what a list of run bytes sounds like, as samples.
#pragma once

#include "machine/RunBytes.h"
#include "sound/Sound.h"

#include <cstddef>
#include <span>

namespace prepare {

/// The port at sound::kRate: the mean of its level, 1 or -1, within each sample; 0 from the list's end on.
[[nodiscard]] sound::Samples Played(std::span<const machine::RunByte> runBytes, const machine::Playback& playback,
                                    std::size_t samples);

} // namespace prepare
