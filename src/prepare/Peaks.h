// Peaks.h: the peaks of a sound's spectra, the partials of its tones among them, each interpolated by a parabola
// through logarithms (Smith, Serra: PARSHL, 1987).
#pragma once

#include "prepare/WindowSpectrum.h"

#include <cstddef>
#include <span>
#include <vector>

namespace prepare {

struct Peak {
    float hertz;    // between the lines of the spectrum, to a cent for a steady partial
    float strength; // square root of its height above the mean of its neighbourhood
};

/// Takes spectra of 93 ms.
class PeakFinder {
public:
    PeakFinder();

    /// Those from 35 to 5200 Hz around sample `centre`; outside of `sound` there is silence.
    [[nodiscard]] std::vector<Peak> PeaksAt(std::span<const float> sound, std::size_t centre);

private:
    WindowSpectrum spectrum_;
};

} // namespace prepare
