// MachineSteps.h: what is typed on a PC-1600 for a sound file that comes over the serial port: to reserve room, to load
// and to start it.
// Source  published references; they give the room for C0C5 alone, not what it is with the 32 KB extension.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace core {

struct MachineSteps {
    std::optional<std::string> room; // in PRO mode; none below C0C5: the command isn't known
    std::vector<std::string> load;   // the last one waits for the file
    std::string call;                // where it doesn't start by itself
};

/// For `Datengroesse` bytes at `address`, sent at so many baud.
[[nodiscard]] MachineSteps MachineStepsFor(std::int64_t address, std::int64_t Datengroesse, int baud = 9600);

/// The same for somebody who types, line by line, English. A line in brackets is a note.
[[nodiscard]] std::vector<std::string> StepsFor(std::int64_t address, std::int64_t Datengroesse, int baud = 9600);

} // namespace core
