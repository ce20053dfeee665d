// Noise.h: noise and hum taken out by spectral subtraction, with oversubtraction and a floor (Berouti, Schwartz,
// Makhoul: Enhancement of speech corrupted by acoustic noise, 1979), and where a recording is silent but for them.
// Shares, floors and thresholds are measured: docs/listening.md.
#pragma once

#include "prepare/Levels.h"
#include "prepare/Spectra.h"

namespace prepare {

/// In each bin, what is there in the pauses too.
[[nodiscard]] Powers NoiseOf(const Spectra& spectra, const core::Progress& progress);

/// Takes so much out of each bin.
void TakeOut(const Powers& noise, Spectra& spectra, const core::Progress& progress);

enum class Clicks { Kept, TakenOut };

/// Where something is to be heard in `sound`, whose `noise` has been taken out.
[[nodiscard]] Mask Heard(const sound::Samples& sound, const Powers& noise, Clicks clicks);

} // namespace prepare
