#include "prepare/Noise.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <vector>

namespace prepare {
namespace {

constexpr double kAboveHum = 250; // Hz: mains hum and its strong partials lie lower

/// Of the sound that the noise is.
float AmplitudeOfNoise(const Powers& noise)
{
    constexpr float kMeanSquare = 0.375F; // of a Hann window: 3/8
    const auto power = std::accumulate(noise.begin(), noise.end(), 0.0F);
    return std::sqrt(power / (kMeanSquare * Spectra::kWindow * Spectra::kTransform / 2));
}

/// Silences what is too short for a sound and stands too much alone to be part of one: single clicks. Where there is
/// nothing else, they are the sound.
void TakeClicksOut(Mask& heard)
{
    constexpr std::ptrdiff_t kShort = sound::SamplesIn(0.060);  // a click, as long as the windows make it
    constexpr std::ptrdiff_t kAlone = sound::SamplesIn(0.120);  // farther than a plosive is from its vowel
    constexpr std::ptrdiff_t kSingle = sound::SamplesIn(0.500); // farther than one beat is from the next
    struct Stretch {
        Mask::iterator first;
        Mask::iterator last;
        [[nodiscard]] bool IsShort() const { return last - first <= kShort; }
    };
    std::vector<Stretch> stretches;
    for (auto last = heard.begin(); last != heard.end();) {
        const auto first = std::find(last, heard.end(), true);
        last = std::find(first, heard.end(), false);
        if (first != last) stretches.push_back({first, last});
    }
    if (std::ranges::all_of(stretches, &Stretch::IsShort)) return;
    const auto isApart = [&](std::size_t i) { // from the one before
        const bool areClicks = stretches[i - 1].IsShort() && stretches[i].IsShort();
        return stretches[i].first - stretches[i - 1].last >= (areClicks ? kSingle : kAlone);
    };
    for (std::size_t i = 0; i < stretches.size(); ++i) {
        const auto standsAlone = (i == 0 || isApart(i)) && (i + 1 == stretches.size() || isApart(i + 1));
        if (standsAlone && stretches[i].IsShort()) std::fill(stretches[i].first, stretches[i].last, false);
    }
}

/// The frames without the digitally silent ones at both ends, which tell nothing of the noise.
std::span<const float> WithoutSilentEnds(const Powers& powers)
{
    constexpr float kSilent = 1e-8F; // of the loud frames' power
    const auto isHeard = [least = kSilent * LoudPower(powers)](float power) { return power > least; };
    const auto first = std::ranges::find_if(powers, isHeard);
    const auto last = std::find_if(powers.rbegin(), powers.rend(), isHeard).base();
    return {first, std::max(first, last)};
}

/// Noise is broad: what stands out of its neighbourhood is a partial of a tone, unless it is hum.
Powers WithoutPartials(const Powers& noise)
{
    constexpr std::size_t kReach = 12; // bins on either side, 258 Hz: there are gaps between the partials of most tones
    constexpr double kGaps = 0.3;      // of the neighbourhood at least
    constexpr float kMean = 1.2F; // times that quantile of noise is about its mean, over so few frames as there are
    auto broad = noise;
    for (auto k = Spectra::BinFrom(kAboveHum); k < noise.size(); ++k) {
        const auto around = std::span(noise).subspan(k - kReach, std::min(2 * kReach + 1, noise.size() - k + kReach));
        broad[k] = kMean * Quantile({around.begin(), around.end()}, kGaps);
    }
    return broad;
}

} // namespace

Powers NoiseOf(const Spectra& spectra, const core::Progress& progress)
{
    constexpr double kPauses = 0.12;  // of all frames: the softest
    constexpr float kSofter = 0.25F;  // of the loud frames' power at most, or there are no pauses
    constexpr double kSoftest = 0.02; // of all frames
    constexpr float kSteady = 2.5F;   // times the power of the softest at most, or it is a sound that swells or fades
    const MelBands judged(1, kAboveHum, sound::kRate);
    Powers powers;
    for (std::size_t frame = 0; frame < spectra.Size() && progress.GoesOn(); ++frame)
        powers.push_back(judged.PowersOf(spectra[frame]).front());
    const auto inside = WithoutSilentEnds(powers);
    const Powers heard(inside.begin(), inside.end());
    const auto most = Quantile(heard, kPauses);
    Powers noise(Spectra::kBins);
    if (most > kSofter * LoudPower(heard) || most > kSteady * Quantile(heard, kSoftest)) return noise;
    const auto before = static_cast<std::size_t>(inside.data() - powers.data());
    float frames = 0;
    for (std::size_t frame = 0; frame < heard.size(); ++frame) {
        if (heard[frame] > most) continue;
        ++frames;
        for (std::size_t k = 0; k < noise.size(); ++k)
            noise[k] += std::norm(spectra[before + frame][k]);
    }
    for (auto& power : noise)
        power /= frames;
    return WithoutPartials(noise);
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

Mask Heard(const sound::Samples& sound, const Powers& noise, Clicks clicks)
{
    constexpr double kSilent = -40; // dB, against the loud moments
    constexpr double kNoise = -3;   // dB, against what the noise was
    const auto level = Envelope(sound, kMoment);
    const auto least =
        std::max(LoudAmplitude(level) * AmplitudeOf(kSilent), AmplitudeOfNoise(noise) * AmplitudeOf(kNoise));
    Mask heard(level.size());
    std::transform(level.begin(), level.end(), heard.begin(), [&](float amplitude) { return amplitude > least; });
    if (clicks == Clicks::TakenOut) TakeClicksOut(heard);
    return heard;
}

} // namespace prepare
