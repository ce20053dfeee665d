// RecordingBytes.h: the recording that the encoder turns into a given list of run bytes.
//     bytes 1 to 44    header: PCM, mono, 8 bit, the rate
//     then             for each period of n samples: low, high, and one sample low, which ends it
//     last two         low; the encoder never looks at them
// The lists that a recording can lead to, without the end mark:
//     2 to 253         anywhere
//     254              anywhere, but a list doesn't end with a single one
//     1                only behind 254
//     0                only behind 254, but not behind exactly two of them
#pragma once

#include "machine/RunBytes.h"

#include <span>
#include <string>
#include <string_view>

namespace core {

/// The whole Wave file. Requires: a recording can lead to `runBytes`.
[[nodiscard]] std::string RecordingBytes(std::span<const machine::RunByte> runBytes, const machine::SampleRate& rate);

/// Whether `file` is one that RecordingBytes made, of whatever run bytes.
[[nodiscard]] bool IsRecordingOfOurs(std::string_view file);

} // namespace core
