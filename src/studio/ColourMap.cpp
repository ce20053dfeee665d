#include "studio/ColourMap.h"

#include <algorithm>
#include <cmath>

namespace studio {
namespace {

/// sRGB as IEC 61966-2-1 encodes it, of a linear value from 0 to 1.
std::uint8_t Encoded(double linear)
{
    linear = std::clamp(linear, 0.0, 1.0);
    const auto encoded = linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
    return static_cast<std::uint8_t>(std::lround(255 * encoded));
}

/// Of CIE 1976 L*a*b*, with the white of D65.
struct Lab {
    double lightness;
    double a;
    double b;
};

Colour ColourOf(const Lab& lab)
{
    const auto f = (lab.lightness + 16) / 116;
    const auto cube = [](double t) { return t > 6.0 / 29 ? t * t * t : 3 * 36.0 / 841 * (t - 4.0 / 29); };
    const auto x = 0.95047 * cube(f + lab.a / 500);
    const auto y = cube(f);
    const auto z = 1.08883 * cube(f - lab.b / 200);
    return {.red = Encoded(3.2406 * x - 1.5372 * y - 0.4986 * z),
            .green = Encoded(-0.9689 * x + 1.8758 * y + 0.0415 * z),
            .blue = Encoded(0.0557 * x - 0.2040 * y + 1.0570 * z)};
}

} // namespace

const std::array<Colour, 256>& ColourMap()
{
    // As far apart as screens can show, so that all on the line between is a colour of sRGB, too.
    static constexpr Lab kQuiet{.lightness = 8, .a = 20, .b = -35};
    static constexpr Lab kLoud{.lightness = 93, .a = -12, .b = 75};
    static const auto kMap = [] {
        std::array<Colour, 256> map{};
        for (std::size_t level = 0; level < map.size(); ++level) {
            const auto part = static_cast<double>(level) / 255;
            const auto at = [&](double Lab::*value) { return std::lerp(kQuiet.*value, kLoud.*value, part); };
            map[level] = ColourOf({.lightness = at(&Lab::lightness), .a = at(&Lab::a), .b = at(&Lab::b)});
        }
        return map;
    }();
    return kMap;
}

} // namespace studio
