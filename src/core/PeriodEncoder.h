// PeriodEncoder.h: the samples of a recording reduced to one number per cycle of the signal.
// A period is measured from fall to fall: it ends on the first sample below 128 after one above 128, that sample
// included, and its run byte is its length in samples. Samples of exactly 128 count but decide nothing.
// From 254 samples on, 254s are taken off until less than 255 are left; the rest is the period's last byte, also when
// it is 0. The last two samples are never looked at, and a period that hasn't ended by then leaves no byte.
#pragma once

#include "core/BackgroundTask.h"
#include "machine/RunBytes.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace core {

struct EncodedPeriods {
    machine::RunBytes runBytes;         // without the end mark
    std::vector<std::size_t> continued; // which of them are 254s that go on in the next: 254, 8 may be two periods
};

/// Those of `samples`, unsigned bytes.
[[nodiscard]] EncodedPeriods EncodePeriods(std::string_view samples, BackgroundTask& RuntimeBackgroundTask);

/// The run bytes as HexTokenText, the end mark last. A 254 that goes on is "&Hfe", all others have upper-case digits.
[[nodiscard]] std::string TokensOf(const EncodedPeriods& periods);

/// The same as assembler lines: a tab, "DEFB " and up to 16 values, or 17 in a line that follows one completed by a 254
/// that goes on. Each line ends with a carriage return.
[[nodiscard]] std::string ListingOf(const EncodedPeriods& periods);

} // namespace core
