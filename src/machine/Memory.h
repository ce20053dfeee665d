// Memory.h: where in the machine's memory a sound file can lie.
#pragma once

#include <cstdint>

namespace machine {

inline constexpr std::int64_t kLowestAddress = 0x80C5;         // with the 32 KB extension
inline constexpr std::int64_t kPlayerAddress = kLowestAddress; // for which the window's player is laid out
inline constexpr std::int64_t kLowestWithoutExtension = 0xC0C5;
inline constexpr std::int64_t kHighestAddress = 0xEFFF;

/// The largest size of a file at `address`. Both add up to the highest address at most: one byte less than there are.
[[nodiscard]] constexpr std::int64_t RoomAt(std::int64_t address)
{
    return kHighestAddress - address;
}

inline constexpr std::int64_t kLargestSize = RoomAt(kLowestAddress);
inline constexpr std::int64_t kLargestWithoutExtension = RoomAt(kLowestWithoutExtension);
static_assert(kLargestSize == 28474 && kLargestWithoutExtension == 12090);

/// Whether a file at `address` needs the 32 KB extension. One that doesn't is small enough for a machine without.
[[nodiscard]] constexpr bool NeedsExtension(std::int64_t address)
{
    return address < kLowestWithoutExtension;
}

} // namespace machine
