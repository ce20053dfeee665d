// ImageSize.h: what a finished image's size means for the user.
#pragma once

#include "core/SoundFileHeader.h"

#include <cstddef>
#include <cstdint>

namespace core {

inline constexpr std::int64_t kSmallestSize = kTokensPC1600 + 2; // a single period and the end mark

/// How many run bytes, without the end mark, a PC-1600's file of that size has.
[[nodiscard]] constexpr std::size_t RunBytesIn(std::int64_t Datengroesse)
{
    return static_cast<std::size_t>(Datengroesse - kTokensPC1600 - 1);
}

/// Named by what is said of the size; the two sizes on the limits themselves are silent.
enum class SizeBand { Size, Silent, NeedsExtension, TooLarge };

/// The band of `Datengroesse` bytes, which counts the header for PC-1600 and leaves it out for PokEmul.
[[nodiscard]] SizeBand SizeBandOf(std::int64_t Datengroesse);

} // namespace core
