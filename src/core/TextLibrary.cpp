#include "core/TextLibrary.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>

namespace text {
namespace {

template <class View>
View MidOf(View s, std::size_t start, std::size_t count)
{
    assert(start >= 1);
    return start > s.size() ? View{} : s.substr(start - 1, count);
}

int DigitOf(char32_t c)
{
    if (c >= '0' && c <= '9') return static_cast<int>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<int>(c - 'A') + 10;
    if (c >= 'a' && c <= 'f') return static_cast<int>(c - 'a') + 10;
    return -1;
}

} // namespace

std::string_view Left(std::string_view s, std::size_t n)
{
    return s.substr(0, n);
}

std::string_view Right(std::string_view s, std::size_t n)
{
    return s.substr(s.size() - std::min(n, s.size()));
}

std::string_view Mid(std::string_view s, std::size_t start, std::size_t count)
{
    return MidOf(s, start, count);
}

std::u32string_view Mid(std::u32string_view s, std::size_t start, std::size_t count)
{
    return MidOf(s, start, count);
}

double Val(std::u32string_view s)
{
    if (s.size() < 2 || s[0] != '&' || (s[1] != 'H' && s[1] != 'h')) return 0;
    double value = 0;
    for (const auto c : s.substr(2)) {
        const int digit = DigitOf(c);
        if (digit < 0) break;
        value = value * 16 + digit;
    }
    return value;
}

std::string Str(double v)
{
    std::array<char, 400> digits{}; // the longest double has 309 digits before its point
    return {digits.data(),
            std::to_chars(digits.data(), digits.data() + digits.size(), v, std::chars_format::fixed).ptr};
}

char32_t Asc(std::u32string_view s)
{
    return s.empty() ? 0 : s.front();
}

std::uint8_t Asc(std::string_view s)
{
    return s.empty() ? 0 : static_cast<std::uint8_t>(s.front());
}

} // namespace text
