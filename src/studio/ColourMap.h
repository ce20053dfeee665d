// ColourMap.h: the colours of a spectrogram, for levels from 0 to 255: a straight line through CIE L*a*b*, from a dark
// blue over grey to a light yellow. So equal steps look equal, each colour is lighter than the one before, and what
// differs besides lightness is blue and yellow, which those tell apart, too, who can't tell red from green.
#pragma once

#include <array>
#include <cstdint>

namespace studio {

struct Colour { // sRGB
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
};

/// Valid for the length of the program.
[[nodiscard]] const std::array<Colour, 256>& ColourMap();

} // namespace studio
