// Waveform.h: the peaks of a sound over its length, in memory that doesn't grow with it: bins of equally many samples,
// two of which become one whenever there are too many.
#pragma once

#include "studio/Span.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace studio {

/// The lowest and the highest sample of a column of the picture, as a rule -1 to 1. Nothing is there where low > high.
struct Peak {
    float low = 1;
    float high = -1;

    [[nodiscard]] bool IsThere() const { return low <= high; }
    bool operator==(const Peak&) const = default;
};

class Waveform {
public:
    static constexpr std::size_t kMostBins = 65536; // 23 ms each for an hour at 44100 Hz, read anew to look closer

    /// Of a sound of so many samples a second, whose first sample stands at `from` seconds.
    explicit Waveform(std::int64_t rate, double from = 0) : rate_(rate), from_(from) {}

    void Take(std::span<const float> samples);

    [[nodiscard]] Span Covered() const;
    /// How long a bin is: there is nothing finer in it.
    [[nodiscard]] double SecondsPerBin() const;
    /// So many columns from one second to another. Where there is a sample for each, no column between two is empty.
    /// Requires: `span` isn't empty.
    [[nodiscard]] std::vector<Peak> Columns(const Span& span, std::size_t columns) const;
    /// The seconds at which it is first as loud as `level`, to the bin; its end where it never is.
    [[nodiscard]] double FirstAbove(float level) const;

private:
    std::int64_t rate_;
    double from_;
    std::int64_t samples_ = 0;
    std::int64_t perBin_ = 1;
    std::vector<Peak> bins_;
};

} // namespace studio
