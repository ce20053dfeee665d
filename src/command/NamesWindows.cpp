#include "command/Names.h"

#include <windows.h>

namespace command {
namespace {

constexpr char32_t kNone = 0xFFFD;

std::u32string Decoded(std::wstring_view units)
{
    std::u32string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const char32_t unit = units[i];
        const bool isPair = IS_HIGH_SURROGATE(unit) && i + 1 < units.size() && IS_LOW_SURROGATE(units[i + 1]);
        if (isPair)
            text += 0x10000 + ((unit - 0xD800) << 10U) + (static_cast<char32_t>(units[++i]) - 0xDC00);
        else
            text += IS_HIGH_SURROGATE(unit) || IS_LOW_SURROGATE(unit) ? kNone : unit;
    }
    return text;
}

} // namespace

std::u32string CharactersOf(const std::filesystem::path& path)
{
    return Decoded(path.native());
}

std::u32string Composed(const std::u32string& text)
{
    const auto units = std::filesystem::path(text).native();
    std::wstring composed(3 * units.size() + 1, L'\0'); // as long as it can become
    const auto length = NormalizeString(NormalizationC, units.data(), static_cast<int>(units.size()), composed.data(),
                                        static_cast<int>(composed.size()));
    return length > 0 ? Decoded({composed.data(), static_cast<std::size_t>(length)}) : text;
}

} // namespace command
