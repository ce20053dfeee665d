// Memory.h: where in the machine's memory a sound file can lie.
#pragma once

#include <cstdint>

namespace machine {

inline constexpr std::int64_t kLowestAddress = 0x80C5;         // with the 32 KB extension
inline constexpr std::int64_t kPlayerAddress = kLowestAddress; // the only place where the player runs
inline constexpr std::int64_t kLowestWithoutExtension = 0xC0C5;
inline constexpr std::int64_t kHighestAddress = 0xEFFF;

// A file's address and its size add up to the highest address at most: one byte less than there are.
inline constexpr std::int64_t kLargestSize = kHighestAddress - kLowestAddress;
inline constexpr std::int64_t kLargestWithoutExtension = kHighestAddress - kLowestWithoutExtension;
static_assert(kLargestSize == 28474 && kLargestWithoutExtension == 12090);

} // namespace machine
