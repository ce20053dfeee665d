#include "command/Names.h"

#include <algorithm>

namespace command {

std::filesystem::path PathOf(std::string_view argument)
{
    return std::u8string(argument.begin(), argument.end());
}

std::string Shown(std::u32string text)
{
    const auto isControl = [](char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); };
    std::ranges::replace_if(text, isControl, U'?');
    const auto utf8 = std::filesystem::path(text).u8string();
    return {utf8.begin(), utf8.end()};
}

std::string Shown(const std::filesystem::path& path)
{
    return Shown(CharactersOf(path));
}

} // namespace command
