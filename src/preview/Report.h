// Report.h: what a sound file is and how it will sound, one "name: value" a line, as UTF-8.
//     target:           PC-1600 or PokEmul
//     title:            characters that a terminal would obey are shown as "?"
//     load address:     PC-1600 only; four hexadecimal digits
//     sample rate:      of the recording
//     periods:          their number; Timing.h says what one is
//     seconds:          from the first write to the port to the end of the last level
//     pitch:            against the recording, in percent and in cents, the hundredth of a semitone: + is higher.
//                       That of the whole: the time of all periods in the recording over their time on the machine
//     shortest period, longest period:    its samples in the recording, and its pitch
//     warning:          a line for each that WarningsOf has
// Without a single period pitch, shortest and longest are "none".
#pragma once

#include "machine/Timing.h"
#include "preview/SoundFile.h"

#include <string>
#include <vector>

namespace preview {

/// Why the machine won't play this well-formed file, a line each; as a rule none.
[[nodiscard]] std::vector<std::string> WarningsOf(const SoundFile& sound);

[[nodiscard]] std::string ReportOn(const SoundFile& sound, const machine::Machine& onMachine);

} // namespace preview
