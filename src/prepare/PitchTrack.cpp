#include "prepare/PitchTrack.h"

#include "prepare/Levels.h"
#include "prepare/Peaks.h"
#include "sound/Sound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace prepare {
namespace {

constexpr int kPartials = 10;
constexpr float kPartialWeight = 0.75F; // of each partial beside the one below it
constexpr float kLowestPitch = 40;      // Hz: a bass's lowest string
constexpr float kPitchesPerOctave = 60; // 20 cents each; the partials then tell it exactly
constexpr std::size_t kPitches = 390;   // up to 3520 Hz; no tune goes higher

// Melodies lie higher than what goes with them, and below some 200 Hz the ear hears less, too.
constexpr float kLowTones = 200; // Hz

constexpr float kNotZero = 1e-9F; // far below each strength and level, for quotients

using Saliences = std::array<float, kPitches>;

/// Where a pitch falls among the kPitches, in steps of 20 cents.
float StepsOf(float hertz)
{
    return kPitchesPerOctave * std::log2(hertz / kLowestPitch);
}

/// How far a partial lies above its pitch.
float StepsTo(int partial)
{
    return kPitchesPerOctave * std::log2(static_cast<float>(partial));
}

/// What a peak counts.
float WeightOf(const Peak& peak)
{
    const float ratio = kLowTones / peak.hertz;
    return peak.strength / std::sqrt(1 + ratio * ratio * ratio * ratio);
}

/// Adds a peak to the pitches that it may be a partial of.
void AddPeak(const Peak& peak, Saliences& saliences)
{
    constexpr float kReach = 2.5F; // steps: half a semitone
    const float steps = StepsOf(peak.hertz);
    float weight = WeightOf(peak);
    for (int partial = 1; partial <= kPartials; ++partial, weight *= kPartialWeight) {
        const float pitch = steps - StepsTo(partial);
        if (pitch + kReach < 0) break; // so are the others
        const auto first = static_cast<std::size_t>(std::max(0.0F, std::ceil(pitch - kReach)));
        const auto last = static_cast<std::size_t>(std::min(kPitches - 1.0F, std::floor(pitch + kReach)));
        for (auto k = first; k <= last; ++k) {
            const float c = std::cos((static_cast<float>(k) - pitch) * (std::numbers::pi_v<float> / 2 / kReach));
            saliences[k] += weight * c * c;
        }
    }
}

/// The strongest path through the pitches of all spectra, where a step and a jump have their prices.
class Path {
public:
    void Add(const Saliences& saliences)
    {
        constexpr float kStepPrice = 0.05F;
        constexpr float kJumpPrice = 0.3F;
        constexpr std::size_t kSteps = 3; // 60 cents in 10 ms
        const auto best = Strongest();
        Saliences next;
        auto& from = from_.emplace_back();
        for (std::size_t k = 0; k < kPitches; ++k) {
            float sum = sums_[best] - kJumpPrice;
            auto origin = best;
            for (auto j = k - std::min(k, kSteps); j <= std::min(kPitches - 1, k + kSteps); ++j) {
                const float candidate = sums_[j] - kStepPrice * static_cast<float>(j < k ? k - j : j - k);
                if (candidate <= sum) continue;
                sum = candidate;
                origin = j;
            }
            next[k] = sum - sums_[best] + saliences[k];
            from[k] = static_cast<std::uint16_t>(origin);
        }
        sums_ = next;
    }

    /// One pitch for each spectrum added.
    [[nodiscard]] std::vector<std::size_t> Best() const
    {
        std::vector<std::size_t> path(from_.size());
        auto at = Strongest();
        for (auto k = path.size(); k-- > 0;) {
            path[k] = at;
            at = from_[k][at];
        }
        return path;
    }

private:
    [[nodiscard]] std::size_t Strongest() const
    {
        return static_cast<std::size_t>(std::ranges::max_element(sums_) - sums_.begin());
    }

    Saliences sums_{}; // of the best path to each pitch, less the best of all before the last spectrum
    std::vector<std::array<std::uint16_t, kPitches>> from_;
};

/// `sound` through two high-passes of one pole each: without an offset, hum and rumble, which are no tones of a tune.
sound::Samples WithoutLows(std::span<const float> sound)
{
    constexpr auto kFollows = static_cast<float>(2 * std::numbers::pi * kLowTones / sound::kRate);
    sound::Samples high(sound.begin(), sound.end());
    for (int pole = 0; pole < 2; ++pole) {
        float low = high.empty() ? 0 : high.front();
        for (auto& sample : high) {
            low += kFollows * (sample - low);
            sample -= low;
        }
    }
    return high;
}

/// How loud the sound is around each pitch of the track, over so many seconds.
Amplitudes LevelsOf(std::span<const float> sound, double seconds)
{
    const auto envelope = Envelope(sound, seconds);
    Amplitudes levels;
    for (std::size_t sample = 0; sample < envelope.size(); sample += kPitchHop)
        levels.push_back(envelope[sample]);
    return levels;
}

struct Tone {
    float hertz = 0;    // 0 where no partial of it was found
    float strength = 0; // of its partials
};

/// The pitch near `step` by its lowest partials' own frequencies; those of strings are the truest.
Tone ToneNear(std::size_t step, const std::vector<Peak>& peaks)
{
    constexpr int kTruePartials = 4;
    constexpr float kReach = 2; // steps: less than half a semitone
    const auto pitch = static_cast<float>(step);
    float power = 0;
    float offsets = 0; // weighted by power
    for (const auto& peak : peaks) {
        const float steps = StepsOf(peak.hertz);
        for (int partial = 1; partial <= kTruePartials; ++partial) {
            const float offset = steps - pitch - StepsTo(partial);
            if (std::abs(offset) > kReach) continue;
            power += peak.strength * peak.strength;
            offsets += peak.strength * peak.strength * offset;
        }
    }
    if (power == 0) return {};
    return {kLowestPitch * std::exp2((pitch + offsets / power) / kPitchesPerOctave), power};
}

/// How many times as loud a sound gets around a moment, within 20 ms.
float RiseAt(const Amplitudes& levels, std::size_t k)
{
    constexpr std::size_t kReach = 3; // pitches
    float rise = 0;
    for (auto i = k - kReach; i <= k + kReach; ++i)
        rise = std::max(rise, levels[i + 1] / (levels[i - 1] + kNotZero));
    return rise;
}

/// Silences a moment of `track` wherever the same pitch is struck anew. There both its partials and the whole sound
/// rise; either alone is a vibrato, or a drum.
void ArticulateStrikes(std::vector<float>& track, const std::vector<Tone>& tones, const Amplitudes& levels)
{
    constexpr float kPartialsRise = 1.3F;
    constexpr float kLevelRise = 1.75F;
    constexpr float kSamePitch = 1.04F; // less than a semitone
    std::vector<float> rises(tones.size());
    for (auto k = 2 * kPitchGap; k + 2 * kPitchGap < tones.size(); ++k) {
        const auto before = tones[k - 2 * kPitchGap].hertz;
        const auto behind = tones[k + kPitchGap].hertz;
        if (before == 0 || behind == 0 || std::max(before, behind) > kSamePitch * std::min(before, behind)) continue;
        float least = tones[k].strength;
        for (auto i = k - kPitchGap; i < k; ++i)
            least = std::min(least, tones[i].strength);
        const float rise = tones[k + kPitchGap].strength / (least + kNotZero);
        if (rise > kPartialsRise && RiseAt(levels, k) > kLevelRise) rises[k] = rise;
    }
    for (auto k = kPitchGap; k + kPitchGap < tones.size(); ++k) {
        const auto around = std::span(rises).subspan(k - kPitchGap, 2 * kPitchGap + 1);
        if (rises[k] == 0 || std::max_element(around.begin(), around.end()) - around.begin() != kPitchGap) continue;
        std::fill_n(&track[k - kPitchGap], kPitchGap, 0.0F);
    }
}

} // namespace

std::vector<float> PitchTrack(std::span<const float> sound, const core::Progress& progress)
{
    constexpr double kSteady = 0.060; // seconds: a note's level without its beats
    constexpr double kSoftest = -35;  // dB, against the loud moments
    const auto levels = LevelsOf(WithoutLows(sound), kSteady);
    const float softest = LoudAmplitude(levels) * AmplitudeOf(kSoftest);
    PeakFinder finder;
    std::vector<std::vector<Peak>> spectra;
    Path path;
    for (std::size_t k = 0; k < levels.size(); ++k) {
        if (!progress.GoesOn(k, levels.size())) return {};
        auto& peaks = spectra.emplace_back(finder.PeaksAt(sound, k * kPitchHop));
        Saliences saliences{};
        for (const auto& peak : peaks)
            AddPeak(peak, saliences);
        const float most = *std::ranges::max_element(saliences) + kNotZero;
        for (auto& salience : saliences)
            salience /= most;
        path.Add(saliences);
    }
    const auto best = path.Best();
    std::vector<Tone> tones(levels.size());
    std::vector<float> track(levels.size());
    for (std::size_t k = 0; k < tones.size(); ++k) {
        if (levels[k] <= softest) continue;
        tones[k] = ToneNear(best[k], spectra[k]);
        track[k] = tones[k].hertz;
    }
    ArticulateStrikes(track, tones, LevelsOf(sound, kMoment));
    return track;
}

} // namespace prepare
