// SoundFileHeader.h: the fixed bytes in front of the run bytes, as HexTokenText, and the fields that change.
//     target      tokens   holds
//     PC-1600     131      16-byte file header, 115-byte Z80 player
//     PokEmul     115      the same player, token for token
//
//     field            token in PC-1600   bytes   written when
//     program length     5                  2     the run bytes are known; low byte first
//     load address       8                  2     the address is accepted; low byte first
//     start address     11                  2     the same, with the same value
//     rate byte         89                  1     the sample rate is accepted
//     title            105                 25     the same; byte 0D behind it
// For PokEmul take 16 off; the first three don't exist there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace core {

inline constexpr std::int64_t kFileHeaderTokens = 16;
inline constexpr std::int64_t kTokensPC1600 = 131;
inline constexpr std::int64_t kTokensPokeMul = kTokensPC1600 - kFileHeaderTokens;

// The fields, as tokens of the PC-1600 header.
inline constexpr std::size_t kProgramLengthToken = 5;
inline constexpr std::size_t kLoadAddressToken = 8;
inline constexpr std::size_t kStartAddressToken = 11;
inline constexpr std::size_t kRateToken = 89;
inline constexpr std::size_t kTitleToken = 105;
inline constexpr std::size_t kTitleTokens = 25;

/// The header of a target, unpatched, and where its fields stand.
struct HeaderLayout {
    std::string_view tokens;
    std::size_t rateToken;
    std::size_t titleToken;
    bool hasFileHeader; // with the program length and the addresses
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
[[nodiscard]] std::string WithProgramLength(std::string_view header, std::string_view lowToken,
                                            std::string_view highToken);

/// `header` of the target PC-1600 with load and start address. The player's own addresses stay those of 80C5.
[[nodiscard]] std::string WithAddress(std::string_view header, std::string_view lowToken, std::string_view highToken);

} // namespace core
