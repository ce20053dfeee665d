#include "core/HexTokenText.h"

#include "core/TextLibrary.h"

#include <cassert>

namespace core {

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
