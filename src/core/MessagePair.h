// MessagePair.h: a text in the program's two languages.
#pragma once

#include <optional>
#include <string_view>

struct MessagePair {
    std::string_view ger;
    std::string_view eng;
};

/// The text for `language`, "ger" or "eng"; none for any other value, and then nothing is shown or set.
[[nodiscard]] constexpr std::optional<std::string_view> TextFor(std::string_view language, const MessagePair& pair)
{
    if (language == "eng") return pair.eng;
    if (language == "ger") return pair.ger;
    return std::nullopt;
}
