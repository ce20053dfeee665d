// SoundFileImage.h: a whole sound file: the header of its target, the run bytes with the end mark, and two zeros.
#pragma once

#include "core/BackgroundTask.h"
#include "core/LoadAddress.h"
#include "core/Title.h"
#include "machine/Memory.h"
#include "machine/RunBytes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace core {

inline constexpr std::string_view kAfterEndMark("\0\0", 2);

/// What a sound file says.
struct SoundFile {
    std::optional<std::int64_t> loadAddress;              // none: a file for PokEmul
    machine::SampleRate sampleRate;                       // of the recording
    std::u32string title;                                 // as NameTokens cuts it
    machine::RunBytes runBytes;                           // without the end mark
    std::int64_t playerAddress = machine::kPlayerAddress; // the only one where the player in the file runs
};

/// What the window tells of it and adds to the address: header and run bytes with the end mark, and for PokEmul the run
/// bytes alone.
[[nodiscard]] std::int64_t SizeOf(const SoundFile& sound);

/// The bytes of the file that runs where it is loaded, whatever `playerAddress` says; or why there is none.
[[nodiscard]] std::variant<std::string, AddressRefusal, TitleRefusal> LaidOutFile(SoundFile sound);

/// The bytes of the file. Requires: it fits below the highest address, as `LoadAddressOf` has found.
[[nodiscard]] std::string SoundFileImage(const SoundFile& sound);

/// The same from a finished header and the run bytes with their end mark, both as HexTokenText.
[[nodiscard]] std::string SoundFileImage(std::string_view header, std::string_view BinZeile,
                                         BackgroundTask& RuntimeBackgroundTask);

} // namespace core
