// PeriodEncoder.h: the samples of a recording reduced to one number per cycle of the signal.
// A period is measured from fall to fall: it ends on the first sample below 128 after one above 128, that sample
// included, and its run byte is its length in samples. Samples of exactly 128 count but decide nothing.
//     2 to 253    a period of that many samples; 1 to 253 after 254: the rest of a long one
//     254         254 samples more belong to the same period
//     0           only directly after one 254: the period had exactly 254 samples
//     255         end mark, once, as the very last byte
// The last two samples are never looked at, and a period that hasn't ended by then leaves no byte.
#pragma once

#include "core/BackgroundTask.h"

#include <string>
#include <string_view>

namespace core {

/// The run bytes of `samples` (unsigned bytes) as HexTokenText. Where a `listing` is given, the same bytes are appended
/// to it as assembler lines: a tab, "DEFB " and up to 16 values, or 17 in a line that follows one completed by a 254
/// within a long period. Each line ends with a carriage return.
[[nodiscard]] std::string EncodePeriods(std::string_view samples, std::string* listing,
                                        BackgroundTask& RuntimeBackgroundTask);

} // namespace core
