// MachineSteps.h: what to type on the PC-1600 so that it loads a sound file from its serial port and plays it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace core {

/// The lines in their order, English, for a file of `size` bytes, as the window tells it, that lies at `loadAddress`. A
/// line in brackets is a note; the others are typed as they are. BLOAD waits for the file.
[[nodiscard]] std::vector<std::string> StepsFor(std::uint16_t loadAddress, std::size_t size, int baud = 9600);

} // namespace core
