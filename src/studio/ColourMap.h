// ColourMap.h: the colours of a spectrogram, for levels from 0 to 255: from a dark blue over grey to a light yellow.
// Each is lighter than the one before by the same step of CIE L*, and only blue and yellow are mixed, which those see,
// too, who can't tell red from green. So it is the same picture in grey, and for everybody.
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
