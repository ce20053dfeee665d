// WaveAcceptance.h: whether a dropped file can be converted, and what the sound file needs to know of it.
// The canonical 44-byte Wave layout is taken for granted: four fields are read at fixed places, nothing is walked.
//     bytes 21, 22      format tag        16 bits    must be 1 (PCM)
//     bytes 23, 24      channels          16 bits    must be 1
//     bytes 25 to 28    sample rate, Hz   32 bits    must be one that the player knows
//     bytes 35, 36      bits per sample   16 bits    must be 8
//     byte 45 on        samples           unsigned, 128 is the midline
// All numbers are little-endian and unsigned; a position past the end of the file reads as 0.
#pragma once

#include "core/BackgroundTask.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace core {

struct WaveFields {
    std::uint32_t formatTag;
    std::uint32_t channels;
    std::uint32_t sampleRate; // Hz
    std::uint32_t bitsPerSample;
};

enum class WaveRefusal { FormatTag, Channels, SampleRate, BitsPerSample };

inline constexpr double kLargestWaveFile = 500000; // bytes

/// True for a file that is longer than that.
[[nodiscard]] bool IsTooLarge(double fileBytes);

[[nodiscard]] WaveFields ReadWaveFields(std::string_view file);

/// The first of the four fields, in their order, that can't be converted.
[[nodiscard]] std::optional<WaveRefusal> RefusalOf(const WaveFields& fields);

/// One token: the player's name for the rate. Requires: one that it knows.
[[nodiscard]] std::string RateToken(std::uint32_t sampleRate);

/// Always 25 tokens: the title that becomes of the name, one byte a character, then 00.
[[nodiscard]] std::string NameTokens(std::u32string_view fileName, BackgroundTask& RuntimeBackgroundTask);

/// What stands behind the 44 bytes of the header; empty where nothing does.
[[nodiscard]] std::string SampleBytes(std::string file);

/// The window title of a file whose rate is accepted: "tone.wav / 20044 Bytes / 11.025 kHz". UTF-8.
[[nodiscard]] std::string FileTitle(std::string_view utf8Name, double fileBytes, std::uint32_t sampleRate);

} // namespace core
