// Line.h: an open serial port, a file for each system. No call waits longer than kWait. What can't be done is a
// LineError.
//     libserialport opens no pseudo terminal and changes the settings before anybody can keep them, so that it couldn't
//     give them back. It lists the ports alone.
#pragma once

#include "serial/Send.h"

#include <chrono>
#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <string_view>

namespace serial {

inline constexpr std::chrono::milliseconds kWait{20};

class LineError : public std::exception {
public:
    LineError(Refusal::Kind kind, std::error_code reason) : refusal{kind, reason} {}

    Refusal refusal;
};

class Line {
public:
    Line(const std::string& port, int baud);
    /// The settings are as they were before.
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /// How many of `bytes` the port has taken, maybe none.
    [[nodiscard]] std::size_t Write(std::string_view bytes);
    /// Lets time pass, and sees whether the port is still there.
    void Wait();
    /// Whether all that was written has left the port, as far as its driver knows.
    [[nodiscard]] bool IsEmpty();
    /// Throws away what hasn't left.
    void Discard() noexcept;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace serial
