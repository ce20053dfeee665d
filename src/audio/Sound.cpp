#include "audio/Sound.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace audio {
namespace {

constexpr double kFullScale = 32767;

using Samples = std::vector<std::int16_t>;

/// The root of the mean square of the loudest `window` samples, which may be fewer.
double Strongest(const Samples& samples, std::size_t window)
{
    std::int64_t sum = 0; // of squares: exact
    std::int64_t most = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto square = [&](std::size_t at) { return std::int64_t{samples[at]} * samples[at]; };
        sum += square(i) - (i >= window ? square(i - window) : 0);
        most = std::max(most, sum);
    }
    const auto count = std::min(window, samples.size());
    return count == 0 ? 0 : std::sqrt(static_cast<double>(most) / static_cast<double>(count));
}

} // namespace

Sound SoundOf(std::span<const float> samples, int rate, double level)
{
    Samples whole;
    whole.reserve(samples.size());
    int peak = 1;
    for (const auto sample : samples) {
        whole.push_back(static_cast<std::int16_t>(std::lround(std::clamp(sample, -1.0F, 1.0F) * kFullScale)));
        peak = std::max(peak, std::abs(int{whole.back()}));
    }
    Sound sound{.size = static_cast<std::int64_t>(whole.size()), .read = {}, .mostGain = kFullScale / peak};
    if (const auto strength = Strongest(whole, static_cast<std::size_t>(rate)); strength > 0)
        sound.gain = level * kFullScale / strength;
    sound.read = [shared = std::make_shared<const Samples>(std::move(whole))](auto first, auto into) {
        std::copy_n(shared->begin() + first, into.size(), into.begin());
    };
    return sound;
}

} // namespace audio
