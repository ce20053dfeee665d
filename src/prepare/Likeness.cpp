#include "prepare/Likeness.h"

#include "prepare/PeriodChoice.h"
#include "prepare/Played.h"
#include "prepare/Spectra.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace prepare {
namespace {

/// How many times as strong in each band as it was asked for until now the target is to be, where `played` was heard.
void Correct(const Powers& wanted, const Powers& played, std::span<float> gains)
{
    constexpr float kStep = 0.25F;  // of the difference, in dB, is taken at a time
    constexpr float kMost = 2;      // as a factor of amplitude, either way: 6 dB
    constexpr float kLeast = 1e-6F; // of a frame's power, -60 dB: what is softer nobody hears, and 0 has no quotient
    const auto wantedSum = std::accumulate(wanted.begin(), wanted.end(), 0.0F);
    const auto playedSum = std::accumulate(played.begin(), played.end(), 0.0F);
    if (wantedSum <= 0 || playedSum <= 0) return;
    for (std::size_t band = 0; band < gains.size(); ++band) {
        const auto lack = (wanted[band] / wantedSum + kLeast) / (played[band] / playedSum + kLeast);
        gains[band] = std::clamp(gains[band] * std::pow(lack, kStep / 2), 1 / kMost, kMost);
    }
}

/// Makes of the spectra of what is played those to ask for next: its phases with the amplitudes of `wanted`, these
/// times the gains of its bands, `gains` for each frame, which are corrected first.
void AskForMore(const Spectra& wanted, const MelBands& bands, std::span<float> gains, Spectra& played,
                const core::Progress& progress)
{
    for (std::size_t frame = 0; frame < wanted.Size() && progress.GoesOn(); ++frame) {
        const auto frameGains = gains.subspan(frame * bands.count, bands.count);
        Correct(bands.PowersOf(wanted[frame]), bands.PowersOf(played[frame]), frameGains);
        for (std::size_t k = 0; k < Spectra::kBins; ++k) {
            auto& bin = played[frame][k];
            const auto amplitude = std::abs(bin);
            if (bands.ofBin[k] == bands.count || amplitude == 0)
                bin = wanted[frame][k];
            else
                bin *= frameGains[bands.ofBin[k]] * std::abs(wanted[frame][k]) / amplitude;
        }
    }
}

} // namespace

void LevelMoments(const Mask& heard, sound::Samples& target)
{
    constexpr double kFaintest = -40; // dB, against the loud moments: fainter ones are raised no more
    const auto level = Envelope(target, kMoment);
    const auto faintest = LoudAmplitude(level) * AmplitudeOf(kFaintest);
    for (std::size_t i = 0; i < target.size(); ++i)
        target[i] = heard[i] ? target[i] / std::max(level[i], faintest) : 0;
}

sound::Samples Approach(const sound::Samples& target, const machine::Playback& playback, float price,
                        core::Steps& steps, int others)
{
    const MelBands bands(20, kLowest, kHighest);
    const Spectra::Gains ones(Spectra::kBins, 1);
    Mask heard(target.size());
    std::transform(target.begin(), target.end(), heard.begin(), [](float sample) { return sample != 0; });
    std::vector<float> gains;
    auto nearer = target;
    for (int left = kApproaches; left > 0; --left) {
        const auto progress = steps.Next(left - 1 + others);
        const auto choosing = progress.Stage(0, 0.7); // of the time that all takes
        const auto runBytes = PeriodChoice(nearer, playback, progress).AtPrice(price, choosing);
        const auto rest = progress.Stage(0.7, 1);
        Spectra spectra(Played(runBytes, playback, target.size()), rest);
        gains.resize(spectra.Size() * bands.count, 1);
        // The target's spectra are made anew each time: the choice needs the memory.
        AskForMore(Spectra(target, rest), bands, gains, spectra, rest);
        nearer = spectra.Sounds(ones, ones, rest).first;
        if (!rest.GoesOn(1)) break;
        LevelMoments(heard, nearer);
    }
    return nearer;
}

} // namespace prepare
