#include "HexTokenText.h"

#include "TextLibrary.h"

#include <array>
#include <cassert>

namespace conversion {
namespace {

constexpr auto kTokens = [] {
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

/// Requires: a hexadecimal digit.
constexpr int DigitOf(char c)
{
    if (c <= '9') return c - '0';
    return c <= 'F' ? c - 'A' + 10 : c - 'a' + 10;
}

} // namespace

std::string_view TokenOf(std::uint8_t byte)
{
    return {&kTokens[byte * kTokenLength], kTokenLength};
}

std::uint8_t ByteOfToken(std::string_view tokens, std::size_t k)
{
    const auto digits = k * kTokenLength + 2; // behind "&H"
    if (digits + 2 > tokens.size()) return 0;
    return static_cast<std::uint8_t>(DigitOf(tokens[digits]) * 16 + DigitOf(tokens[digits + 1]));
}

std::string Splice(std::string_view tokens, std::size_t k, std::string_view patch)
{
    const auto before = k * kTokenLength;
    assert(before + patch.size() <= tokens.size());
    std::string spliced(text::Left(tokens, before));
    spliced += patch;
    spliced += text::Right(tokens, tokens.size() - before - patch.size());
    return spliced;
}

} // namespace conversion
