// HexTokenText.h: bytes held as text until the moment of saving.
//     bytes   2E  08  FF        text    "&H2E&H08&HFF", nothing between the tokens
//     token    0   1   2        size()  4 * tokens
// Units   k counts tokens from 0; token k stands at positions 4k + 1 to 4k + 4 of the text.
// Digits  either case, also mixed; tokens are never compared as text.
// Errors  none: a token past the end reads as 0x00.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace core {

inline constexpr std::size_t kTokenLength = 4; // "&H" and two digits

[[nodiscard]] constexpr std::size_t TokenCount(std::string_view tokens)
{
    return tokens.size() / kTokenLength;
}

inline constexpr auto kTokens = [] {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::array<char, 256 * kTokenLength> tokens{};
    for (std::size_t byte = 0; byte < 256; ++byte) {
        tokens[byte * kTokenLength] = '&';
        tokens[byte * kTokenLength + 1] = 'H';
        tokens[byte * kTokenLength + 2] = kDigits[byte / 16];
        tokens[byte * kTokenLength + 3] = kDigits[byte % 16];
    }
    return tokens;
}();

/// The token of one byte, with upper-case digits. Valid for the length of the program.
[[nodiscard]] constexpr std::string_view TokenOf(std::uint8_t byte)
{
    return {&kTokens[byte * kTokenLength], kTokenLength};
}

/// The byte of token k, or 0x00 where `tokens` ends before it. Inline: a save asks for every byte.
[[nodiscard]] constexpr std::uint8_t ByteOfToken(std::string_view tokens, std::size_t k)
{
    constexpr auto digit = [](char c) { return c <= '9' ? c - '0' : c <= 'F' ? c - 'A' + 10 : c - 'a' + 10; };
    const auto digits = k * kTokenLength + 2; // behind "&H"
    if (digits + 2 > tokens.size()) return 0;
    return static_cast<std::uint8_t>(digit(tokens[digits]) * 16 + digit(tokens[digits + 1]));
}

/// `tokens` with `patch` written over it from token k on; the size stays. Requires: the patch ends inside.
[[nodiscard]] std::string Splice(std::string_view tokens, std::size_t k, std::string_view patch);

} // namespace core
