// Signals.h: the recordings that are measured, each as a whole Wave file at 11025 Hz.
#pragma once

#include "support/WaveBytes.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <string>

/// 500000 bytes of it are about 39000 periods: what a long recording of music or speech comes to.
inline std::string NoisyChirp(std::size_t samples)
{
    std::mt19937 random(1600);
    std::normal_distribution<double> noise(0, 12);
    std::string chirp;
    double phase = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        phase += 2 * std::numbers::pi * (0.02 + 0.116 * static_cast<double>(i) / static_cast<double>(samples));
        chirp += static_cast<char>(std::lround(std::clamp(128 + 90 * std::sin(phase) + noise(random), 0.0, 255.0)));
    }
    return chirp;
}

/// Four syllables a second of a voice that falls and rises, with its overtones, in a little hiss.
inline std::string Speech(std::size_t samples)
{
    std::mt19937 random(1600);
    std::normal_distribution<double> noise(0, 2);
    std::string speech;
    double phase = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        const double seconds = static_cast<double>(i) / 11025;
        phase += 2 * std::numbers::pi * (130 + 40 * std::sin(2 * seconds)) / 11025;
        double voice = noise(random);
        for (int overtone = 1; overtone <= 8; ++overtone)
            voice +=
                40 * std::max(0.0, std::sin(8 * std::numbers::pi * seconds)) / overtone * std::sin(overtone * phase);
        speech += static_cast<char>(std::lround(std::clamp(128 + voice, 0.0, 255.0)));
    }
    return speech;
}

inline std::string WhiteNoise(std::size_t samples)
{
    std::mt19937 random(1600);
    std::string noise(samples, '\0');
    std::ranges::generate(noise, [&] { return static_cast<char>(random()); });
    return noise;
}

inline std::string PeriodOfTwo(std::size_t samples)
{
    std::string tone(samples, '\xC8');
    for (std::size_t i = 1; i < samples; i += 2)
        tone[i] = '\x32';
    return tone;
}

inline std::string Silence(std::size_t samples)
{
    return std::string(samples, '\x80');
}

struct Signal {
    const char* name;
    std::string (*make)(std::size_t samples);
};

inline constexpr Signal kSignals[] = {
    {"chirp", NoisyChirp}, {"speech", Speech}, {"noise", WhiteNoise}, {"two", PeriodOfTwo}, {"silence", Silence}};

/// The whole file: 500000 bytes, or half of that.
inline std::string SignalFile(const Signal& signal, bool half)
{
    constexpr std::size_t kFile = 500000;
    return WaveBytes().samples(signal.make((half ? kFile / 2 : kFile) - 44));
}
