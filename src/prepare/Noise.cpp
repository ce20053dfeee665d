#include "prepare/Noise.h"

#include "prepare/Sound.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace prepare {
namespace {

/// Of the noise that these powers make, as a sound.
float LevelOf(const std::vector<float>& noise)
{
    constexpr float kMeanSquare = 0.375F; // of a Hann window
    const auto power = std::accumulate(noise.begin(), noise.end(), 0.0F);
    return std::sqrt(power / (kMeanSquare * Spectra::kWindow * Spectra::kTransform / 2));
}

/// Silences what is too short for a sound and stands too much alone to be part of one: clicks.
void TakeClicksOut(Levels& heard)
{
    constexpr auto kShort = static_cast<std::ptrdiff_t>(0.060 * kSoundRate); // a click and what the windows make of it
    constexpr auto kAlone = static_cast<std::ptrdiff_t>(0.120 * kSoundRate);
    std::optional<Levels::iterator> before; // the end of what is heard before
    for (auto first = std::find(heard.begin(), heard.end(), 1.0F); first != heard.end();) {
        const auto last = std::find(first, heard.end(), 0.0F);
        const auto next = std::find(last, heard.end(), 1.0F);
        const auto standsAlone =
            (!before || first - *before >= kAlone) && (next == heard.end() || next - last >= kAlone);
        if (standsAlone && last - first <= kShort)
            std::fill(first, last, 0.0F);
        else
            before = last;
        first = next;
    }
}

} // namespace

std::vector<float> NoiseOf(const Spectra& spectra)
{
    constexpr double kPauses = 0.12;  // of all frames: the softest
    constexpr float kSofter = 0.25F;  // of the loud frames' power at most, or there are no pauses
    constexpr double kAboveHum = 250; // Hz
    const MelBands judged(1, kAboveHum, kSoundRate);
    Levels powers;
    for (std::size_t frame = 0; frame < spectra.Size(); ++frame)
        powers.push_back(judged.PowersOf(spectra[frame]).front());
    const auto most = Quantile(powers, kPauses);
    std::vector<float> noise(Spectra::kBins);
    if (most > kSofter * Loud(powers)) return noise;
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

void TakeOut(const std::vector<float>& noise, Spectra& spectra)
{
    constexpr float kOver = 3;    // times what was measured: noise isn't the same in each frame
    constexpr float kLeft = 0.1F; // of a bin's amplitude in any case, or single bins would ring
    for (std::size_t frame = 0; frame < spectra.Size(); ++frame)
        for (std::size_t k = 0; k < noise.size(); ++k) {
            auto& bin = spectra[frame][k];
            const auto power = std::norm(bin);
            if (power > 0) bin *= std::sqrt(std::max(kLeft * kLeft, 1 - kOver * noise[k] / power));
        }
}

Levels Heard(const Levels& sound, const std::vector<float>& noise)
{
    constexpr double kWindow = 0.020; // seconds
    constexpr double kSilent = -40;   // dB, against the loud moments
    constexpr double kNoise = -3;     // dB, against what the noise was
    auto heard = Envelope(sound, kWindow);
    const auto least = std::max(Loud(heard) * AmplitudeOf(kSilent), LevelOf(noise) * AmplitudeOf(kNoise));
    std::ranges::transform(heard, heard.begin(), [&](float level) { return level > least ? 1.0F : 0.0F; });
    TakeClicksOut(heard);
    return heard;
}

} // namespace prepare
