#include "HexTokenText.h"

#include "TextLibrary.h"

#include <cassert>

namespace conversion {

std::string TokenOf(std::uint8_t byte)
{
    return (byte < 0x10 ? "&H0" : "&H") + text::Hex(byte);
}

std::uint8_t ByteOfToken(std::string_view tokens, std::size_t k)
{
    return static_cast<std::uint8_t>(text::Val(text::Mid(tokens, k * kTokenLength + 1, kTokenLength)));
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
