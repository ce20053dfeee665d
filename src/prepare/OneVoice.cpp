#include "prepare/OneVoice.h"

#include "prepare/Levels.h"
#include "prepare/PitchTrack.h"
#include "prepare/WindowSpectrum.h"
#include "sound/Sound.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <utility>

namespace prepare {
namespace {

constexpr std::size_t kWindow = 2048; // samples: 93 ms, as the pitch is found in
constexpr auto kLineHertz = static_cast<float>(sound::kRate) / kWindow;
constexpr auto kFirstLine = static_cast<std::size_t>(100 / kLineHertz) + 1; // what goes with a voice hardly lies lower,
constexpr auto kLastLine = static_cast<std::size_t>(3000 / kLineHertz);     // or higher

/// What lies on the partials of a pitch, at one moment.
struct Moment {
    float power = 0;   // of all
    float clarity = 0; // the share of it that lies there, less what would there by chance: 0 to 1
};

bool IsOnPartial(float hertz, float pitch)
{
    constexpr float kPartials = 10;
    constexpr float kWidth = 2 * kLineHertz; // on either side: of a Hann window's line
    constexpr float kInexact = 0.05F;        // of a partial's frequency: strings, vibrato
    const auto partial = std::round(hertz / pitch);
    return partial >= 1 && partial <= kPartials &&
           std::abs(hertz - partial * pitch) < std::max(kWidth, kInexact * partial * pitch);
}

Moment MomentOf(std::span<const std::complex<float>> lines, float pitch)
{
    float all = 0;
    float on = 0;
    float covered = 0;
    for (auto k = kFirstLine; k <= kLastLine; ++k) {
        const auto power = std::norm(lines[k]);
        all += power;
        if (!IsOnPartial(static_cast<float>(k) * kLineHertz, pitch)) continue;
        on += power;
        ++covered;
    }
    covered /= static_cast<float>(kLastLine - kFirstLine + 1);
    if (all == 0 || covered == 1) return {};
    return {.power = all, .clarity = std::clamp((on / all - covered) / (1 - covered), 0.0F, 1.0F)};
}

} // namespace

bool IsOneVoice(std::span<const float> sound, const std::vector<float>& track, const core::Progress& progress)
{
    // The clearness that 80 percent of the moments have: 0.75 at least in tunes of one voice, 0.45 at most in other
    // music: measured, docs/listening.md.
    constexpr float kClear = 0.60F;
    constexpr double kMostly = 0.20;
    constexpr std::size_t kEvery = 4; // pitches: 40 ms
    constexpr float kSoftest = 1e-2F; // of the loud moments' power, -20 dB: below, noise counts in the voice alone
    WindowSpectrum spectrum(HannWindow(kWindow), kWindow);
    std::vector<Moment> moments;
    Powers powers;
    for (std::size_t k = 0; k < track.size() && progress.GoesOn(k, track.size()); k += kEvery) {
        const auto lines = spectrum.At(sound, k * kPitchHop);
        if (track[k] > 0) moments.push_back(MomentOf(lines, track[k]));
        if (track[k] > 0) powers.push_back(moments.back().power);
    }
    const auto softest = kSoftest * Quantile(powers, 0.95);
    std::vector<float> clarities;
    for (const auto& moment : moments)
        if (moment.power > softest) clarities.push_back(moment.clarity);
    return Quantile(std::move(clarities), kMostly) > kClear;
}

} // namespace prepare
