#include "core/TimeText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <sstream>

namespace core {

std::optional<double> SecondsOf(std::string_view written)
{
    constexpr int kMostParts = 3;
    std::string points(written);
    std::ranges::replace(points, ',', '.');
    std::string_view text(points);
    double seconds = 0;
    for (int part = 1; part <= kMostParts; ++part) {
        const auto end = text.find(':');
        const bool isLast = end == std::string_view::npos;
        const auto digits = text.substr(0, end);
        double number = 0;
        const auto [rest, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
        const bool isNumber = error == std::errc() && rest == digits.data() + digits.size() && std::isfinite(number);
        if (!isNumber || std::signbit(number) || (part > 1 && number >= 60) ||
            (!isLast && number != std::floor(number)))
            return std::nullopt;
        seconds = seconds * 60 + number;
        if (isLast) return seconds;
        text.remove_prefix(end + 1);
    }
    return std::nullopt;
}

std::string TimeText(double seconds)
{
    const auto tenths = std::llround(seconds * 10);
    std::ostringstream text;
    text << tenths / 600 << ':' << std::setfill('0') << std::setw(2) << tenths / 10 % 60 << '.' << tenths % 10;
    return text.str();
}

} // namespace core
