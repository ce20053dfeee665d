// SoundFileImage.h: a whole sound file: the header of its target, the run bytes with the end mark, and two zeros.
#pragma once

#include "core/BackgroundTask.h"
#include "machine/RunBytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace core {

inline constexpr std::string_view kAfterEndMark("\0\0", 2);

/// What a sound file says.
struct SoundFile {
    std::optional<std::int64_t> loadAddress; // none: a file for PokEmul
    machine::SampleRate sampleRate;          // of the recording
    std::u32string title;                    // as NameTokens cuts it
    machine::RunBytes runBytes;              // without the end mark
};

/// The bytes of the file. Requires: it fits below the highest address, as `LoadAddressOf` has found.
[[nodiscard]] std::string SoundFileImage(const SoundFile& sound);

/// The same from a finished header and the run bytes with their end mark, both as HexTokenText.
[[nodiscard]] std::string SoundFileImage(std::string_view header, std::string_view BinZeile,
                                         BackgroundTask& RuntimeBackgroundTask);

} // namespace core
