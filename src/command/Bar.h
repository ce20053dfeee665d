// Bar.h: how far a command is, on the terminal.
#pragma once

#include <chrono>
#include <optional>

namespace command {

/// Shown on standard error where that is a terminal, for work that takes more than a second.
class Bar {
public:
    ~Bar() { End(); }

    /// Takes it away.
    void End();
    /// `done` of the work, 0 to 1, and how long the rest takes where that is known.
    void Show(double done, std::optional<double> secondsLeft = std::nullopt);

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point start_ = Clock::now();
    int percent_ = -1;
    bool isShown_ = false;
};

} // namespace command
