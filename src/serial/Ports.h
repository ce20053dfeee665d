// Ports.h: the serial ports of this machine.
#pragma once

#include <string>
#include <vector>

namespace serial {

struct Port {
    std::string name;        // as Job takes it: /dev/ttyUSB0, COM3
    std::string description; // what the system says of it, UTF-8; empty where it says nothing
};

/// Those that the system knows of now. Throws std::runtime_error where it can't tell.
[[nodiscard]] std::vector<Port> Ports();

} // namespace serial
