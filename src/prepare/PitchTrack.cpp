#include "prepare/PitchTrack.h"

#include "prepare/Levels.h"
#include "prepare/Peaks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace prepare {
namespace {

constexpr int kPartials = 10;
constexpr float kPartialWeight = 0.75F; // of each partial beside the one below it
constexpr float kLowestPitch = 80;      // Hz
constexpr int kPitchesPerOctave = 60;   // 20 cents each
constexpr int kPitches = 330;           // up to 3520 Hz

using Saliences = std::array<float, kPitches>;

/// Where a pitch falls among the kPitches, in steps of 20 cents.
float StepsOf(float hertz)
{
    return static_cast<float>(kPitchesPerOctave) * std::log2(hertz / kLowestPitch);
}

/// What a peak counts. Melodies lie higher than what goes with them, and below some 200 Hz the ear hears less, too.
float WeightOf(const Peak& peak)
{
    const float ratio = 200 / peak.hertz;
    return peak.strength / std::sqrt(1 + ratio * ratio * ratio * ratio);
}

/// Adds a peak to the pitches that it may be a partial of.
void AddPeak(const Peak& peak, Saliences& saliences)
{
    constexpr float kReach = 2.5F; // steps: half a semitone
    const float steps = StepsOf(peak.hertz);
    float weight = WeightOf(peak);
    for (int partial = 1; partial <= kPartials; ++partial, weight *= kPartialWeight) {
        const float pitch = steps - static_cast<float>(kPitchesPerOctave) * std::log2(static_cast<float>(partial));
        const int first = std::max(0, static_cast<int>(std::ceil(pitch - kReach)));
        const int last = std::min(kPitches - 1, static_cast<int>(std::floor(pitch + kReach)));
        for (int k = first; k <= last; ++k) {
            const float c = std::cos((static_cast<float>(k) - pitch) * (std::numbers::pi_v<float> / 2 / kReach));
            saliences[static_cast<std::size_t>(k)] += weight * c * c;
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
        constexpr int kSteps = 3;
        const auto best = static_cast<int>(std::max_element(sums_.begin(), sums_.end()) - sums_.begin());
        const float afterJump = sums_[static_cast<std::size_t>(best)] - kJumpPrice;
        Saliences next;
        auto& from = from_.emplace_back();
        for (int k = 0; k < kPitches; ++k) {
            float sum = afterJump;
            int origin = best;
            for (int j = std::max(0, k - kSteps); j <= std::min(kPitches - 1, k + kSteps); ++j) {
                const float candidate =
                    sums_[static_cast<std::size_t>(j)] - kStepPrice * static_cast<float>(std::abs(j - k));
                if (candidate <= sum) continue;
                sum = candidate;
                origin = j;
            }
            const auto at = static_cast<std::size_t>(k);
            next[at] = sum - sums_[static_cast<std::size_t>(best)] + saliences[at];
            from[at] = static_cast<std::uint16_t>(origin);
        }
        sums_ = next;
    }

    /// One pitch for each spectrum added.
    [[nodiscard]] std::vector<int> Best() const
    {
        std::vector<int> path(from_.size());
        auto at = static_cast<int>(std::max_element(sums_.begin(), sums_.end()) - sums_.begin());
        for (auto k = path.size(); k-- > 0;) {
            path[k] = at;
            at = from_[k][static_cast<std::size_t>(at)];
        }
        return path;
    }

private:
    Saliences sums_{}; // of the best path to each pitch, less the best of all before the last spectrum
    std::vector<std::array<std::uint16_t, kPitches>> from_;
};

/// The loudness of the sound around each pitch of the track, over so many seconds.
Levels LevelsOf(std::span<const float> sound, double seconds)
{
    const auto envelope = Envelope(Levels(sound.begin(), sound.end()), seconds);
    Levels levels;
    for (std::size_t sample = 0; sample < envelope.size(); sample += kPitchHop)
        levels.push_back(envelope[sample]);
    return levels;
}

struct Tone {
    float hertz = 0;    // 0 where no partial of it was found
    float strength = 0; // of its partials
};

/// The pitch near `step` by its lowest partials' own frequencies; those of strings are the truest.
Tone ToneNear(int step, const std::vector<Peak>& peaks)
{
    constexpr int kTruePartials = 4;
    constexpr float kReach = 2; // steps
    float weights = 0;
    float offsets = 0;
    float power = 0;
    for (const auto& peak : peaks) {
        const float steps = StepsOf(peak.hertz);
        for (int partial = 1; partial <= kTruePartials; ++partial) {
            const float offset = steps - static_cast<float>(step) -
                                 static_cast<float>(kPitchesPerOctave) * std::log2(static_cast<float>(partial));
            if (std::abs(offset) > kReach) continue;
            const float weight = peak.strength * peak.strength;
            weights += weight;
            offsets += weight * offset;
            power += peak.strength * peak.strength;
        }
    }
    if (weights == 0) return {};
    const float steps = static_cast<float>(step) + offsets / weights;
    return {kLowestPitch * std::exp2(steps / static_cast<float>(kPitchesPerOctave)), power};
}

/// How many times as loud a sound gets around a moment, within 20 ms.
float RiseAt(const Levels& levels, std::size_t k)
{
    constexpr std::size_t kReach = 3;
    float rise = 0;
    for (auto i = k - kReach; i <= k + kReach; ++i)
        rise = std::max(rise, levels[i + 1] / (levels[i - 1] + 1e-9F));
    return rise;
}

/// Silences a moment of `track` wherever the same pitch is struck anew. There both its partials and the whole sound
/// rise; either alone is a vibrato, or a drum.
void ArticulateStrikes(std::vector<float>& track, const std::vector<Tone>& tones, const Levels& levels)
{
    constexpr float kPartialsRise = 1.3F;
    constexpr float kLevelRise = 1.75F;
    constexpr std::size_t kReach = 3; // pitches: 30 ms, a byte of silence at each rate
    constexpr float kSamePitch = 1.04F;
    std::vector<float> rises(tones.size());
    for (auto k = 2 * kReach; k + 2 * kReach < tones.size(); ++k) {
        const auto before = tones[k - 2 * kReach].hertz;
        const auto behind = tones[k + kReach].hertz;
        if (before == 0 || behind == 0 || std::max(before, behind) > kSamePitch * std::min(before, behind)) continue;
        float least = tones[k].strength;
        for (auto i = k - kReach; i < k; ++i)
            least = std::min(least, tones[i].strength);
        const float rise = tones[k + kReach].strength / (least + 1e-9F);
        if (rise > kPartialsRise && RiseAt(levels, k) > kLevelRise) rises[k] = rise;
    }
    for (auto k = kReach; k + kReach < tones.size(); ++k) {
        const auto around = std::span(rises).subspan(k - kReach, 2 * kReach + 1);
        if (rises[k] == 0 || std::max_element(around.begin(), around.end()) - around.begin() != kReach) continue;
        std::fill_n(&track[k - kReach], kReach, 0.0F);
    }
}

} // namespace

std::vector<float> PitchTrack(std::span<const float> sound, const Progress& progress)
{
    const auto levels = LevelsOf(sound, 0.06);
    const float softest = Loud(levels) * AmplitudeOf(-35);
    PeakFinder finder;
    std::vector<std::vector<Peak>> spectra;
    Path path;
    for (std::size_t k = 0; k < levels.size(); ++k) {
        auto& peaks = spectra.emplace_back(finder.PeaksAt(sound, k * kPitchHop));
        Saliences saliences{};
        for (const auto& peak : peaks)
            AddPeak(peak, saliences);
        const float most = *std::max_element(saliences.begin(), saliences.end()) + 1e-9F;
        for (auto& salience : saliences)
            salience /= most;
        path.Add(saliences);
        progress(static_cast<double>(k) / static_cast<double>(levels.size()));
    }
    const auto best = path.Best();
    std::vector<Tone> tones(levels.size());
    std::vector<float> track(levels.size());
    for (std::size_t k = 0; k < tones.size(); ++k) {
        if (levels[k] <= softest) continue;
        tones[k] = ToneNear(best[k], spectra[k]);
        track[k] = tones[k].hertz;
    }
    ArticulateStrikes(track, tones, LevelsOf(sound, 0.02));
    return track;
}

} // namespace prepare
