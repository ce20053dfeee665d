// Send.h: bytes sent over a serial port: 8 bits, no parity, one stop bit, no flow control, nothing changed on the way.
// Nothing here prints or ends the program; a job may run in any thread.
#pragma once

#include "core/Progress.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace serial {

/// The rates that a PC's serial port has had since ever and that don't exceed what the machine's can be told.
inline constexpr std::array kBauds{50, 75, 110, 150, 200, 300, 600, 1200, 2400, 4800, 9600, 19200, 38400};

struct Job {
    std::string_view bytes; // at least one
    std::string port;       // its name; one without a folder is in /dev, where there are such names
    int baud = 9600;        // one of kBauds
};

/// Start bit, eight data bits, stop bit.
[[nodiscard]] constexpr double SecondsFor(double bytes, int baud)
{
    return bytes * 10 / baud;
}

struct Refusal {
    enum class Kind {
        NoSuchPort,
        NotAPort, // but a file, a folder, another device
        Busy,     // another program has it
        NoRights,
        Baud, // the port can't be set to the rate
        Lost, // it went while it was in use
        Stopped,
        System,
    };
    Kind kind;
    std::error_code reason; // the system's, where it gave one
};

/// Why the port can't be used now; it is opened, set up and given back as it was.
[[nodiscard]] std::optional<Refusal> RefusalOf(const Job& job);

/// Sends the bytes as fast as they leave the port, and comes back when the last has left it. To stop throws away what
/// hasn't left yet. However it ends, the port has its settings back, unless it is gone.
[[nodiscard]] std::optional<Refusal> Send(const Job& job, const core::Progress& progress);

} // namespace serial
