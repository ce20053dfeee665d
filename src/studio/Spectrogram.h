// Spectrogram.h: how loud a sound is, moment by moment and pitch by pitch.
//     time    a column every 12 ms
//     pitch   kRows rows, equally high on the mel scale, from 0 Hz to kHighest
//     level   0 to 255: from kRange dB below the loudest place of the sound up to it. So the quietest recording and the
//             square wave are on one scale.
#pragma once

#include "core/Progress.h"
#include "studio/Span.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace studio {

class Spectrogram {
public:
    static constexpr std::size_t kRows = 192;
    static constexpr double kHighest = 8000; // Hz: what lies above the machine has only as echoes of its edges
    static constexpr double kRange = 70;     // dB

    Spectrogram() = default;
    /// Of `sound`, at sound::kRate, whose first sample stands at `from` seconds of the file. Empty where it is stopped.
    Spectrogram(std::span<const float> sound, double from, const core::Progress& progress);

    [[nodiscard]] Span Covered() const;
    /// A picture of so many columns and rows, row by row from the highest pitch down: of each place the loudest level
    /// in it. Where the sound isn't, it is 0. Quick enough for the window's own thread. Requires: `span` isn't empty.
    [[nodiscard]] std::vector<std::uint8_t> Picture(const Span& span, std::size_t columns, std::size_t rows) const;

private:
    double from_ = 0;
    std::size_t columns_ = 0;
    std::vector<std::uint8_t> levels_; // column by column, from the lowest row up
};

/// Where a pitch stands in a picture, 0 at its top and 1 at its bottom.
[[nodiscard]] double HeightOf(double hertz);

} // namespace studio
