#include "prepare/Levels.h"

#include "prepare/Sound.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace prepare {
namespace {

/// The mean over `width` samples around each one.
Levels Mean(const Levels& levels, std::size_t width)
{
    Levels mean(levels.size());
    const auto ahead = width / 2;
    double sum = 0;
    for (std::size_t i = 0; i < levels.size() + ahead; ++i) {
        if (i < levels.size()) sum += static_cast<double>(levels[i]);
        if (i >= width) sum -= static_cast<double>(levels[i - width]);
        if (i >= ahead) mean[i - ahead] = static_cast<float>(std::max(0.0, sum) / static_cast<double>(width));
    }
    return mean;
}

} // namespace

float Quantile(Levels values, double share)
{
    if (values.empty()) return 0;
    const auto at = values.begin() + std::llround(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

float Loud(const Levels& levels)
{
    constexpr float kSilent = 0.003F; // of the loudest moment
    constexpr double kShare = 0.95;
    const auto least = levels.empty() ? 0 : kSilent * *std::ranges::max_element(levels);
    Levels moments;
    std::ranges::copy_if(levels, std::back_inserter(moments), [&](float level) { return level > least; });
    return Quantile(std::move(moments), kShare);
}

float AmplitudeOf(double decibels)
{
    return static_cast<float>(std::pow(10.0, decibels / 20));
}

Levels Envelope(const Levels& sound, double seconds)
{
    const auto width = static_cast<std::size_t>(seconds * kSoundRate / 2);
    Levels envelope(sound.size());
    std::ranges::transform(sound, envelope.begin(), [](float sample) { return sample * sample; });
    envelope = Mean(Mean(envelope, width), width);
    std::ranges::transform(envelope, envelope.begin(), [](float power) { return std::sqrt(power); });
    return envelope;
}

} // namespace prepare
