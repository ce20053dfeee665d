// TextLibrary.h: cutting and reading texts, and numbers as texts, in the way that the conversion counts them.
//     std::u32string   a text whose characters count: a file name, the typed address
//     std::string      raw bytes, or plain ASCII such as a token text: one element is one byte
// The two don't mix: where a text's length matters, its type says whether characters or bytes are meant.
// Positions count from 1. Nothing here fails: a position or a count past the end just gives less text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace text {

/// The first n elements; the whole text where it has no more. A view into `s`.
[[nodiscard]] std::string_view Left(std::string_view s, std::size_t n);

/// The last n elements; the whole text where it has no more. A view into `s`.
[[nodiscard]] std::string_view Right(std::string_view s, std::size_t n);

/// Up to `count` elements from position `start`; empty where that lies past the end. Requires: start is at least 1.
[[nodiscard]] std::string_view Mid(std::string_view s, std::size_t start, std::size_t count);
[[nodiscard]] std::u32string_view Mid(std::u32string_view s, std::size_t start, std::size_t count);

/// The number that follows the prefix "&H" or "&h", read up to the first character that is no hexadecimal digit;
/// 0 for the prefix alone and for any text without it.
[[nodiscard]] double Val(std::u32string_view s);

/// Plain decimal digits; a fraction only where there is one: 20044, 11.025.
[[nodiscard]] std::string Str(double v);

/// The code of the first character, or the value of the first byte; 0 for the empty text.
[[nodiscard]] char32_t Asc(std::u32string_view s);
[[nodiscard]] std::uint8_t Asc(std::string_view s);

} // namespace text
