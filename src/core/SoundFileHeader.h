// SoundFileHeader.h: the fixed bytes in front of the run bytes, as HexTokenText, and the fields that change.
//     target      holds
//     PC-1600     file header, Z80 player: its code, the rate byte, the title routine, the title and its end
//     PokEmul     the same player, token for token
//
//     field            bytes   written when
//     program length     2     the run bytes are known; low byte first
//     load address       2     the address is accepted; low byte first
//     start address      2     the same, with the same value
//     rate byte          1     the sample rate is accepted
//     title             25     the same; byte 0D behind it
// The first three are in the file header. Eight operands of the player are addresses within the image: it runs only at
// the address that it is laid out for. The window leaves that at 80C5.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace core {

inline constexpr std::int64_t kFileHeaderTokens = 16;
inline constexpr std::int64_t kCodeTokens = 48 + 25; // main loop and delay routine
inline constexpr std::int64_t kTitleRoutineTokens = 15;
inline constexpr std::size_t kTitleTokens = 25;
inline constexpr std::int64_t kTokensPokeMul = kCodeTokens + 1 + kTitleRoutineTokens + kTitleTokens + 1;
inline constexpr std::int64_t kTokensPC1600 = kFileHeaderTokens + kTokensPokeMul;

// The fields, as tokens of the PC-1600 header.
inline constexpr std::size_t kProgramLengthToken = 5;
inline constexpr std::size_t kLoadAddressToken = 8;
inline constexpr std::size_t kStartAddressToken = 11;
inline constexpr std::size_t kRateToken = kFileHeaderTokens + kCodeTokens;
inline constexpr std::size_t kTitleToken = kRateToken + 1 + kTitleRoutineTokens;

/// The header of a target, unpatched.
struct HeaderLayout {
    std::string_view tokens;
    std::size_t absent; // tokens of the PC-1600 header that aren't there: none, or the file header's

    [[nodiscard]] constexpr bool HasFileHeader() const { return absent == 0; } // with program length and addresses
};
extern const HeaderLayout kLayoutPC1600;
extern const HeaderLayout kLayoutPokeMul;

/// `header` of that layout with rate and title. `nameTokens` are 25 tokens.
[[nodiscard]] std::string WithRateAndTitle(std::string_view header, const HeaderLayout& layout,
                                           std::string_view rateToken, std::string_view nameTokens);

/// A 16-bit number as two tokens.
struct WordTokens {
    std::string low;
    std::string high;
};

/// The tokens of a number; none for one above FFFF, which no field can hold.
[[nodiscard]] std::optional<WordTokens> WordTokensOf(std::int64_t number);

/// `header` of the target PC-1600 with the program length: all that follows its first 16 bytes, end mark included.
[[nodiscard]] std::string WithProgramLength(std::string_view header, const WordTokens& length);

/// `header` of the target PC-1600 with load and start address. The player's own addresses stay as they are.
[[nodiscard]] std::string WithAddress(std::string_view header, const WordTokens& address);

/// `header` of that layout with the player laid out for `address`. Requires: one where a sound file can lie.
[[nodiscard]] std::string WithPlayerAt(std::string_view header, const HeaderLayout& layout, std::int64_t address);

/// The address that a player is laid out for; none where its operands belong to different ones, or to one where no
/// sound file can lie. `player` are its 115 bytes, of which only the operands are looked at.
[[nodiscard]] std::optional<std::int64_t> PlayerAddressOf(std::string_view player);

} // namespace core
