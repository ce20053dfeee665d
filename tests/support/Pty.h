// Pty.h: a pair of pseudo terminals: a serial port, and the machine at the other end of its cable.
#pragma once

#include <fcntl.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <string>

class Pty {
public:
    Pty()
    {
        std::array<char, 64> name{};
        if (openpty(&machine_, &port_, name.data(), nullptr, nullptr) != 0) throw "no pseudo terminal";
        Name = name.data();
        fcntl(machine_, F_SETFD, FD_CLOEXEC); // else a program that is started keeps it open
        fcntl(port_, F_SETFD, FD_CLOEXEC);
        settings_ = Settings();
    }
    ~Pty()
    {
        Unplug();
        close(port_);
    }
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    std::string Name;

    [[nodiscard]] int Port() const { return port_; }
    void Unplug()
    {
        if (machine_ >= 0) close(machine_);
        machine_ = -1;
    }
    /// What arrives, until there are so many.
    [[nodiscard]] std::string Read(std::size_t count) const
    {
        std::string bytes(count, '\0');
        std::size_t got = 0;
        while (got < count) {
            const auto more = read(machine_, bytes.data() + got, count - got);
            if (more <= 0) break;
            got += static_cast<std::size_t>(more);
        }
        return bytes.substr(0, got);
    }
    /// Nothing more goes in, until somebody reads.
    void Fill() const
    {
        fcntl(port_, F_SETFL, O_NONBLOCK);
        const std::string bytes(1000, 'x');
        for (int full = 0; full < 5; ++full) { // a full buffer is emptied into another one
            while (write(port_, bytes.data(), bytes.size()) > 0)
                full = 0;
            usleep(20'000);
        }
    }
    /// Whether the port's settings are those that it had at first.
    [[nodiscard]] bool IsAsBefore() const
    {
        const auto now = Settings();
        return now.c_iflag == settings_.c_iflag && now.c_oflag == settings_.c_oflag &&
               now.c_cflag == settings_.c_cflag && now.c_lflag == settings_.c_lflag &&
               std::memcmp(&now.c_cc, &settings_.c_cc, sizeof now.c_cc) == 0;
    }

private:
    [[nodiscard]] termios Settings() const
    {
        termios settings{};
        tcgetattr(port_, &settings);
        return settings;
    }

    int machine_ = -1;
    int port_ = -1;
    termios settings_{};
};
