// PitchTrack.h: the melody of a sound, as the pitch of a single voice.
//     sound     spectra of 93 ms, every 10 ms
//     spectrum  its peaks, each by how far it stands out of its neighbourhood
//     pitch     harmonic summation (Hermes: Measurement of pitch by subharmonic summation, 1988): the weighted sum of
//               the first ten partials of each of 390 pitches from 40 to 3520 Hz
//     track     the path through these that is strongest in all, where a jump has its price: a Viterbi search
// Of several voices the strongest is followed. Where the sound is soft beside its loud parts, or has no partials, the
// track is silent, and for a moment where the same pitch is struck anew, so that it is heard as two notes.
// Weights, prices, reaches and thresholds are measured: docs/listening.md.
#pragma once

#include "core/Progress.h"

#include <cstddef>
#include <span>
#include <vector>

namespace prepare {

inline constexpr std::size_t kPitchHop = 220; // samples of the sound from one pitch to the next: 10 ms

inline constexpr std::size_t kPitchGap = 3; // silent pitches between two notes of the same pitch: 30 ms

/// In Hz, 0 where silent: one at every kPitchHop samples, from the first sample on.
[[nodiscard]] std::vector<float> PitchTrack(std::span<const float> sound, const core::Progress& progress);

} // namespace prepare
