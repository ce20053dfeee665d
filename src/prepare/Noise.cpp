#include "prepare/Noise.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace prepare {
namespace {

/// Of the sound that the noise is.
float AmplitudeOfNoise(const Powers& noise)
{
    constexpr float kMeanSquare = 0.375F; // of a Hann window: 3/8
    const auto power = std::accumulate(noise.begin(), noise.end(), 0.0F);
    return std::sqrt(power / (kMeanSquare * Spectra::kWindow * Spectra::kTransform / 2));
}

/// Silences what is too short for a sound and stands too much alone to be part of one: clicks.
void TakeClicksOut(Mask& heard)
{
    constexpr std::ptrdiff_t kShort = sound::SamplesIn(0.060); // a click, as long as the windows make it
    constexpr std::ptrdiff_t kAlone = sound::SamplesIn(0.120); // farther than a plosive is from its vowel

    std::optional<Mask::iterator> before; // the end of what is heard before
    for (auto first = std::find(heard.begin(), heard.end(), true); first != heard.end();) {
        const auto last = std::find(first, heard.end(), false);
        const auto next = std::find(last, heard.end(), true);
        const auto standsAlone =
            (!before || first - *before >= kAlone) && (next == heard.end() || next - last >= kAlone);
        if (standsAlone && last - first <= kShort)
            std::fill(first, last, false);
        else
            before = last;
        first = next;
    }
}

} // namespace

Powers NoiseOf(const Spectra& spectra, const core::Progress& progress)
{
    constexpr double kPauses = 0.12;  // of all frames: the softest
    constexpr float kSofter = 0.25F;  // of the loud frames' power at most, or there are no pauses
    constexpr double kAboveHum = 250; // Hz: mains hum and its strong partials lie lower
    const MelBands judged(1, kAboveHum, sound::kRate);
    Powers powers;
    for (std::size_t frame = 0; frame < spectra.Size() && progress.GoesOn(); ++frame)
        powers.push_back(judged.PowersOf(spectra[frame]).front());
    const auto most = Quantile(powers, kPauses);
    Powers noise(Spectra::kBins);
    if (most > kSofter * LoudPower(powers)) return noise;
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

void TakeOut(const Powers& noise, Spectra& spectra, const core::Progress& progress)
{
    constexpr float kOver = 3;    // times what was measured: noise isn't the same in each frame
    constexpr float kLeft = 0.1F; // of a bin's amplitude in any case, or single bins would ring
    for (std::size_t frame = 0; frame < spectra.Size() && progress.GoesOn(); ++frame)
        for (std::size_t k = 0; k < noise.size(); ++k) {
            auto& bin = spectra[frame][k];
            const auto power = std::norm(bin);
            if (power > 0) bin *= std::sqrt(std::max(kLeft * kLeft, 1 - kOver * noise[k] / power));
        }
}

Mask Heard(const sound::Samples& sound, const Powers& noise)
{
    constexpr double kSilent = -40; // dB, against the loud moments
    constexpr double kNoise = -3;   // dB, against what the noise was
    const auto level = Envelope(sound, kMoment);
    const auto least =
        std::max(LoudAmplitude(level) * AmplitudeOf(kSilent), AmplitudeOfNoise(noise) * AmplitudeOf(kNoise));
    Mask heard(level.size());
    std::transform(level.begin(), level.end(), heard.begin(), [&](float amplitude) { return amplitude > least; });
    TakeClicksOut(heard);
    return heard;
}

} // namespace prepare
