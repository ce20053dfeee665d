// WaveHeader.h: the 44 bytes in front of the samples of a Wave file that our commands write: PCM, mono.
#pragma once

#include <cstdint>
#include <string>

namespace core {

/// `sampleBytes` is the size of a sample. Requires: the file stays below 4 GiB.
[[nodiscard]] std::string WaveHeader(std::int64_t dataBytes, std::int64_t hertz, std::int64_t sampleBytes);

} // namespace core
