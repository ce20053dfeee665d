#include "prepare/SpeechTarget.h"

#include "prepare/PeriodChoice.h"
#include "prepare/Spectra.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace prepare {
namespace {

using Levels = std::vector<float>;

// What a target holds. A square wave has next to no room beside the bands that carry words.
constexpr double kLowest = 100;   // Hz
constexpr double kHighest = 5500; // Hz
constexpr double kLoud = 0.95;    // of all moments are no louder than the loud ones, by which levels are measured

/// The value that a share of all values don't exceed.
float Quantile(std::vector<float> values, double share)
{
    if (values.empty()) return 0;
    const auto at = values.begin() + std::llround(share * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

float Amplitude(double decibels)
{
    return static_cast<float>(std::pow(10.0, decibels / 20));
}

double HertzOf(std::size_t bin)
{
    return static_cast<double>(bin) * kSoundRate / Spectra::kTransform;
}

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

/// The level around each sample, in a window that is a triangle.
Levels Envelope(const Levels& sound, double seconds)
{
    const auto width = static_cast<std::size_t>(seconds * kSoundRate / 2);
    Levels envelope(sound.size());
    std::ranges::transform(sound, envelope.begin(), [](float sample) { return sample * sample; });
    envelope = Mean(Mean(envelope, width), width);
    std::ranges::transform(envelope, envelope.begin(), [](float power) { return std::sqrt(power); });
    return envelope;
}

float PowerAbove(std::span<const Spectra::Bin> frame, double hertz)
{
    float power = 0;
    for (std::size_t k = 0; k < frame.size(); ++k)
        if (HertzOf(k) >= hertz) power += std::norm(frame[k]);
    return power;
}

/// The power in each bin that is there in the pauses: the mean of the softest frames.
std::vector<float> NoiseOf(const Spectra& spectra)
{
    constexpr double kPauses = 0.12; // of all frames
    std::vector<float> powers(spectra.Size());
    for (std::size_t frame = 0; frame < powers.size(); ++frame)
        powers[frame] = PowerAbove(spectra[frame], kLowest);
    const auto most = Quantile(powers, kPauses);
    std::vector<float> noise(Spectra::kBins);
    float frames = 0;
    for (std::size_t frame = 0; frame < powers.size(); ++frame) {
        if (powers[frame] > most) continue;
        ++frames;
        for (std::size_t k = 0; k < noise.size(); ++k)
            noise[k] += std::norm(spectra[frame][k]);
    }
    for (auto& power : noise)
        power /= frames;
    return noise;
}

/// Takes the noise's power out of each bin.
void TakeOut(const std::vector<float>& noise, Spectra& spectra)
{
    constexpr float kOver = 2.5F; // times what was measured: noise isn't the same in each frame
    constexpr float kLeft = 0.1F; // of a bin's amplitude in any case, or single bins would ring
    for (std::size_t frame = 0; frame < spectra.Size(); ++frame)
        for (std::size_t k = 0; k < noise.size(); ++k) {
            auto& bin = spectra[frame][k];
            const auto power = std::norm(bin);
            if (power > 0) bin *= std::sqrt(std::max(kLeft * kLeft, 1 - kOver * noise[k] / power));
        }
}

/// Gains that make all bands equally loud, each by its level in its loud moments. The bands are equally wide on the
/// mel scale.
Spectra::Gains LevellingGains(const Spectra& spectra)
{
    constexpr std::size_t kBands = 20;
    const auto mel = [](double hertz) { return std::log(1 + hertz / 700); };
    const auto bandOf = [&](std::size_t bin) {
        const auto place = (mel(HertzOf(bin)) - mel(kLowest)) / (mel(kHighest) - mel(kLowest));
        return static_cast<std::size_t>(std::clamp(place, 0.0, 0.999) * kBands);
    };
    const auto isInside = [](std::size_t bin) { return HertzOf(bin) >= kLowest && HertzOf(bin) < kHighest; };
    std::vector<std::vector<float>> powers(kBands, std::vector<float>(spectra.Size()));
    for (std::size_t frame = 0; frame < spectra.Size(); ++frame)
        for (std::size_t k = 0; k < Spectra::kBins; ++k)
            if (isInside(k)) powers[bandOf(k)][frame] += std::norm(spectra[frame][k]);
    Spectra::Gains gains(Spectra::kBins);
    for (std::size_t k = 0; k < gains.size(); ++k) {
        if (!isInside(k)) continue;
        const auto loud = Quantile(powers[bandOf(k)], kLoud);
        if (loud > 0) gains[k] = 1 / std::sqrt(loud);
    }
    return gains;
}

Spectra::Gains GainsAbove(double hertz)
{
    Spectra::Gains gains(Spectra::kBins);
    for (std::size_t k = 0; k < gains.size(); ++k)
        gains[k] = HertzOf(k) < hertz ? 0 : 1;
    return gains;
}

/// Where `sound` is to be heard, whose noise had that level before it was taken out.
std::vector<bool> Heard(const Levels& sound, float noise)
{
    constexpr double kWindow = 0.020; // seconds
    constexpr double kSilent = -40;   // dB, against the loud moments
    constexpr double kNoise = -3;     // dB, against what the noise was
    const auto level = Envelope(sound, kWindow);
    const auto least = std::max(Quantile(level, kLoud) * Amplitude(kSilent), noise * Amplitude(kNoise));
    std::vector<bool> heard(level.size());
    std::transform(level.begin(), level.end(), heard.begin(), [&](float moment) { return moment > least; });
    return heard;
}

Levels SpeechTarget(std::span<const float> sound)
{
    constexpr double kWindow = 0.020; // seconds: within them the levels stay as they are
    constexpr double kFaintest = -40; // dB, against the loud moments: fainter ones are raised no more
    constexpr float kWindowPower = 0.375F * Spectra::kWindow * Spectra::kTransform / 2; // of a sound of level 1
    Spectra spectra(sound);
    const auto noise = NoiseOf(spectra);
    float noisePower = 0;
    for (std::size_t k = 0; k < noise.size(); ++k)
        if (HertzOf(k) >= kLowest) noisePower += noise[k];
    TakeOut(noise, spectra);
    auto [plain, target] = spectra.Sounds(GainsAbove(kLowest), LevellingGains(spectra));
    const auto heard = Heard(plain, std::sqrt(noisePower / kWindowPower));
    const auto level = Envelope(target, kWindow);
    const auto faintest = Quantile(level, kLoud) * Amplitude(kFaintest);
    for (std::size_t i = 0; i < target.size(); ++i)
        target[i] = heard[i] ? target[i] / std::max(level[i], faintest) : 0;
    return target;
}

/// Without the silence at both ends.
std::span<const float> Trimmed(std::span<const float> target)
{
    const auto isHeard = [](float level) { return level != 0; };
    const auto first = std::ranges::find_if(target, isHeard) - target.begin();
    const auto last = std::ranges::find_if(target.rbegin(), target.rend(), isHeard).base() - target.begin();
    if (first >= last) return {};
    return target.subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(last - first));
}

} // namespace

std::string SpeechPeriods(std::span<const float> sound, const Playback& playback, std::size_t mostRunBytes,
                          const Progress& progress)
{
    constexpr Prices kPrices{.least = 0.06F, .most = 0.5F};
    const auto target = SpeechTarget(sound);
    return FitPeriods(Trimmed(target), playback, kPrices, mostRunBytes, progress);
}

std::string SoundPeriods(std::span<const float> sound, const Playback& playback, std::size_t mostRunBytes,
                         const Progress& progress)
{
    return SpeechPeriods(sound, playback, mostRunBytes, progress);
}

} // namespace prepare
