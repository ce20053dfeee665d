#include "prepare/Levels.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace prepare {
namespace {

/// The mean over `width` samples around each one.
std::vector<float> Mean(const std::vector<float>& values, std::size_t width)
{
    std::vector<float> mean(values.size());
    const auto ahead = width / 2;
    double sum = 0;
    for (std::size_t i = 0; i < values.size() + ahead; ++i) {
        if (i < values.size()) sum += values[i];
        if (i >= width) sum -= values[i - width];
        if (i >= ahead) mean[i - ahead] = static_cast<float>(std::max(0.0, sum) / static_cast<double>(width));
    }
    return mean;
}

/// What 95 percent of the moments don't exceed that are more than `silent` times the loudest.
float Loud(const std::vector<float>& moments, float silent)
{
    constexpr double kShare = 0.95; // measured: docs/listening.md
    const auto least = moments.empty() ? 0 : silent * *std::ranges::max_element(moments);
    std::vector<float> audible;
    std::ranges::copy_if(moments, std::back_inserter(audible), [&](float moment) { return moment > least; });
    return Quantile(std::move(audible), kShare);
}

} // namespace

float Quantile(std::vector<float> values, double share)
{
    if (values.empty()) return 0;
    const auto at = values.begin() + std::llround(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

float LoudAmplitude(const Amplitudes& moments)
{
    return Loud(moments, 0.003F); // -50 dB
}

float LoudPower(const Powers& moments)
{
    return Loud(moments, 0.003F); // -25 dB
}

float AmplitudeOf(double decibels)
{
    return static_cast<float>(std::pow(10.0, decibels / 20));
}

Amplitudes Envelope(std::span<const float> sound, double seconds)
{
    const auto width = sound::SamplesIn(seconds / 2);
    std::vector<float> envelope(sound.size());
    std::ranges::transform(sound, envelope.begin(), [](float sample) { return sample * sample; });
    envelope = Mean(Mean(envelope, width), width);
    std::ranges::transform(envelope, envelope.begin(), [](float power) { return std::sqrt(power); });
    return envelope;
}

} // namespace prepare
