// PeriodChoice.h: the run bytes whose square wave, as the machine plays it, is most like a target: a Viterbi search
// over the machine's clock (Forney: The Viterbi algorithm, 1973), in which the price of a byte is a Lagrange multiplier
// (Shoham, Gersho: Efficient bit allocation for an arbitrary set of quantizers, 1988).
//     target   at sound::kRate. Its level says how much each moment counts; where it is 0 for long nothing is heard
//     score    of a period: the target's integral over the high half less that over the low one, in ms, less the price
//              of a byte. So a level of 1 that is met throughout earns 1 a millisecond.
//     254      keeps the port high and so is silence: it scores 0, less its price
// The list is the one with the greatest sum of scores that is found where times are told apart by a delay step and the
// target's integral by a quarter of one: against a search over every cycle it loses 0.1 to 0.8 percent of the sum. It
// holds bytes from 2 to 254 and doesn't end with 254, so that there is a recording for it.
#pragma once

#include "core/Progress.h"
#include "machine/RunBytes.h"

#include <cstddef>
#include <span>
#include <vector>

namespace prepare {

/// Chooses for one target, at as many prices as are asked for.
class PeriodChoice {
public:
    PeriodChoice(std::span<const float> target, const machine::Playback& playback, const core::Progress& progress);

    /// The best list at `price` for each byte.
    [[nodiscard]] machine::RunBytes AtPrice(float price, const core::Progress& progress);

private:
    static constexpr std::size_t kPlaces = 4; // of the target's integral within a delay step
    static constexpr std::size_t kStarts = 2; // of a period, that are told apart within two delay steps

    /// Of a table: two delay steps each, up to the end, and as far behind it as a byte can lead: what 254 takes on top
    /// of its steps is less than one of them.
    [[nodiscard]] std::size_t Columns() const { return steps_ + machine::kStaysHigh + 1; }
    [[nodiscard]] static std::size_t IndexOf(std::int64_t time, std::int64_t unit, std::size_t rows,
                                             std::size_t columns);
    [[nodiscard]] std::size_t StateOf(std::int64_t time) const;
    [[nodiscard]] std::int64_t TimeOf(std::size_t state) const;
    void Spread(std::int64_t time, float base);
    void Reach(std::int64_t time, machine::RunByte byte, float score);
    [[nodiscard]] machine::RunBytes WayBack() const;

    machine::Playback playback_;
    std::int64_t step_;          // cycles of a delay step
    std::size_t steps_;          // of two delay steps each, up to the target's end
    std::int32_t longest_;       // byte that is tried
    std::vector<float> mids_;    // twice the integral at every delay step, a row for each place within it
    std::vector<float> ends_;    // the integral and the cost of silence at every second step, a row for each place
    std::vector<float> silence_; // what the silence up to every second step costs
    // Of the best way to each start of a period; a row for each start within two delay steps.
    std::vector<float> score_;
    std::vector<std::int32_t> from_; // its last byte, and how many cycles behind the start it ends
};

struct Prices {
    float least; // below it more bytes aren't worth it
    float most;  // above it nothing is left that is worth hearing
};

struct FittedPeriods {
    machine::RunBytes runBytes;
    float price;
};

/// The best list at about the least price at which it has no more than `mostBytes`; at the most price where none has.
/// Leaves room in `steps` for the `others` that come if it fits at once, and for twice as many where it doesn't.
[[nodiscard]] FittedPeriods FitPeriods(std::span<const float> target, const machine::Playback& playback, Prices prices,
                                       std::size_t mostBytes, core::Steps& steps, int others);

} // namespace prepare
