// MachineLines.h: what is typed on a PC-1600 for a sound file that comes over the serial port: to reserve room, to load
// and to start it.
// Source  published references; they give the room for C0C5 alone, not what it is with the 32 KB extension.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace core {

struct MachineLines {
    std::optional<std::string> room; // none below C0C5: the command isn't known
    std::vector<std::string> load;   // the last one waits for the file
    std::string call;
};

/// For `Datengroesse` bytes at `address`.
[[nodiscard]] MachineLines MachineLinesFor(std::int64_t address, std::int64_t Datengroesse);

} // namespace core
