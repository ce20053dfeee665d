// ImageSize.h: what a finished image's size means for the user.
#pragma once

#include <cstdint>

namespace core {

/// Named by what is said of the size; the two sizes on the limits themselves are silent.
enum class SizeBand { Size, Silent, NeedsExtension, TooLarge };

/// The band of `Datengroesse` bytes, which counts the header for PC-1600 and leaves it out for PokEmul.
[[nodiscard]] SizeBand SizeBandOf(std::int64_t Datengroesse);

} // namespace core
