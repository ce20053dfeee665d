// SoundFile.h: a finished sound file taken apart again. T counts the run bytes, the end mark included.
//     PC-1600   PokEmul    bytes   content
//        0                   16    file header: constants, program length T + 115, load address, the same as start
//       16         0        115    player: the template's bytes but for the rate byte, the title and, for the PC-1600,
//                                  the address that it is laid out for
//      131       115          T    run bytes; the first FF is the last of them, the end mark
//      131 + T   115 + T      2    00 00, and nothing behind them
// The first byte tells the layouts apart: FF or CD. All offsets in a reason count from the first byte of the file.
#pragma once

#include "core/SoundFileHeader.h"
#include "core/SoundFileImage.h"
#include "machine/Memory.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace preview {

// One for PokEmul, whose size is that of its run bytes alone: player, run bytes, two zeros.
inline constexpr std::size_t kLargestFile = core::kTokensPokeMul + machine::kLargestSize + core::kAfterEndMark.size();
static_assert(kLargestFile == 28591);

using core::SoundFile;

/// Why something can't be done: English, for the user, to be shown behind the file's name.
struct Refusal {
    std::string reason;
};

/// The sound file that `bytes` are, or what is wrong with them. Refuses all that the window can't have saved, but for
/// titles and run bytes that no recording leads to, and players that are laid out for another address. The title comes
/// without the zeros that fill its field.
[[nodiscard]] std::variant<SoundFile, Refusal> ParseSoundFile(std::string_view bytes);

} // namespace preview
