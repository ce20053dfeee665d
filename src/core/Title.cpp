#include "core/Title.h"

#include "core/SoundFileHeader.h"

#include <algorithm>

namespace core {
namespace {

constexpr auto kIsBeyondLatin1 = [](char32_t character) { return character > 0xFF; };

} // namespace

std::u32string TitleOf(std::u32string_view fileName)
{
    std::u32string title(fileName.substr(0, kTitleTokens));
    std::ranges::replace_if(title, kIsBeyondLatin1, U'?');
    return title;
}

std::optional<TitleRefusal> RefusalOfTitle(std::u32string_view title)
{
    if (title.size() > kTitleTokens) return TitleRefusal::TooLong;
    if (std::ranges::any_of(title, kIsBeyondLatin1)) return TitleRefusal::BeyondLatin1;
    return std::nullopt;
}

} // namespace core
