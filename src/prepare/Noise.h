// Noise.h: noise and hum, and where a recording is silent but for them.
#pragma once

#include "prepare/Levels.h"
#include "prepare/Spectra.h"

namespace prepare {

/// The power in each bin that is there in the pauses too.
[[nodiscard]] std::vector<float> NoiseOf(const Spectra& spectra);

/// Takes so much out of each bin.
void TakeOut(const std::vector<float>& noise, Spectra& spectra);

/// Where something is to be heard in `sound`, whose `noise` has been taken out: 1, and else 0.
[[nodiscard]] Levels Heard(const Levels& sound, const std::vector<float>& noise);

} // namespace prepare
