#include "command/Bar.h"

#include "command/Terminal.h"

#include <cmath>
#include <iostream>
#include <string>
#include <utility>

namespace command {
namespace {

constexpr std::size_t kWidth = 50; // characters

} // namespace

void Bar::End()
{
    if (std::exchange(isShown_, false)) std::cerr << '\r' << std::string(kWidth + 25, ' ') << '\r';
}

void Bar::Show(double done, std::optional<double> secondsLeft)
{
    static const bool isSeen = ShowsProgress();
    const auto percent = static_cast<int>(done * 100);
    if (!isSeen || percent == percent_ || Clock::now() - start_ < std::chrono::seconds(1)) return;
    percent_ = percent;
    isShown_ = true;
    const auto full = static_cast<std::size_t>(done * kWidth);
    std::cerr << "\r[" << std::string(full, '#') << std::string(kWidth - full, '.') << "] " << percent << " %";
    if (secondsLeft) std::cerr << ", " << std::lround(std::ceil(*secondsLeft)) << " s left   ";
    std::cerr << std::flush;
}

} // namespace command
