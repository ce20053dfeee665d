// Colors.h: text colours as 0xRRGGBB.
#pragma once

#include <cstdint>

inline constexpr std::uint32_t kBlack = 0x000000; // shown as the desktop's own text colour
inline constexpr std::uint32_t kRed = 0xFF0000;   // a file is coming, or was refused
