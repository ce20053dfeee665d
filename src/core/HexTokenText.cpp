#include "core/HexTokenText.h"

#include "core/TextLibrary.h"

#include <array>
#include <cassert>

namespace core {
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

} // namespace

std::string_view TokenOf(std::uint8_t byte)
{
    return {&kTokens[byte * kTokenLength], kTokenLength};
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

} // namespace core
