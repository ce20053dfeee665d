#include "sound/SoundSource.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace sound {
namespace {

constexpr std::int64_t kSamplesAtOnce = 16384; // of all channels
constexpr float kLoudest = 32768;              // full scale of whole numbers that somebody took for fractions

/// What a calculation can take: files of fractions may hold anything.
float Finite(float sample)
{
    return std::isfinite(sample) ? std::clamp(sample, -kLoudest, kLoudest) : 0;
}

} // namespace

void SoundSource::Skip(std::int64_t frames)
{
    while (frames > 0) {
        const auto read = std::ssize(Read(frames).mixed);
        if (read == 0) return;
        frames -= read;
    }
}

SoundSource::Block SoundSource::Read(std::int64_t most)
{
    const auto count = static_cast<std::size_t>(Channels());
    const auto frames = std::min(most, std::max<std::int64_t>(kSamplesAtOnce / Channels(), 1));
    channels_.resize(static_cast<std::size_t>(frames) * count);
    const auto read = static_cast<std::size_t>(std::max<std::int64_t>(ReadFrames(channels_.data(), frames), 0));
    mixed_.resize(read);
    turned_.resize(count > 1 ? read : 0);
    const auto mix = [&](auto channels) {
        for (std::size_t frame = 0; frame < read; ++frame) {
            float sum = 0;
            float turned = 0;
            for (std::size_t channel = 0; channel < channels; ++channel) {
                const auto sample = Finite(channels_[frame * channels + channel]);
                sum += sample;
                turned += channel % 2 == 0 ? sample : -sample;
            }
            mixed_[frame] = sum / static_cast<float>(channels);
            if (channels > 1) turned_[frame] = turned / static_cast<float>(channels);
        }
    };
    if (count == 2)
        mix(std::integral_constant<std::size_t, 2>()); // most are: twice as fast where it is known
    else
        mix(count);
    return {.mixed = mixed_, .turned = turned_};
}

} // namespace sound
