// Title.h: what the machine shows of a sound: 25 bytes of Latin-1.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace core {

/// The title that becomes of a file's name: its first 25 characters, with "?" for one beyond Latin-1.
[[nodiscard]] std::u32string TitleOf(std::u32string_view fileName);

enum class TitleRefusal { TooLong, BeyondLatin1 };

/// Why `title` can't be shown as it is, or none.
[[nodiscard]] std::optional<TitleRefusal> RefusalOfTitle(std::u32string_view title);

} // namespace core
