// SampleRates.h: the rates that the player knows. Everything that depends on a rate asks here: which recordings are
// taken, the byte in the header, what is taken for a sound file, and when the machine plays what.
#pragma once

#include <array>
#include <cstdint>

namespace machine {

struct SampleRate {
    std::uint32_t hertz;
    std::uint8_t playerByte;  // what stands in the sound file; the player compares it with 6 and with 8
    std::int64_t stepCycles;  // of the Z80 for one delay step, the call and the counted loop included
    std::int64_t stepFetches; // of opcodes within one delay step; the machine may wait a cycle at each
};

inline constexpr std::array kSampleRates{
    SampleRate{.hertz = 6000, .playerByte = 6, .stepCycles = 276, .stepFetches = 24},
    SampleRate{.hertz = 8000, .playerByte = 8, .stepCycles = 206, .stepFetches = 20},
    SampleRate{.hertz = 11025, .playerByte = 11, .stepCycles = 156, .stepFetches = 17},
};

/// The rate of so many Hz; nullptr where the player knows none.
[[nodiscard]] constexpr const SampleRate* RateOfHertz(std::uint32_t hertz)
{
    for (const auto& rate : kSampleRates)
        if (rate.hertz == hertz) return &rate;
    return nullptr;
}

/// The rate that the byte in a sound file means; nullptr where it means none.
[[nodiscard]] constexpr const SampleRate* RateOfPlayerByte(std::uint32_t byte)
{
    for (const auto& rate : kSampleRates)
        if (rate.playerByte == byte) return &rate;
    return nullptr;
}

} // namespace machine
