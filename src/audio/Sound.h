// Sound.h: what can be played: mono, 16 bits, at the rate of the player that it is given to.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace audio {

struct Sound {
    std::int64_t size = 0; // samples

    /// Gives the samples from `first` on, as many as `into` takes; they lie within the sound. Called in the thread of
    /// the sound device: it doesn't wait, and doesn't throw.
    std::function<void(std::int64_t first, std::span<std::int16_t> into)> read;

    double gain = 1;     // what each sample is multiplied by at full volume,
    double mostGain = 1; // and by how much at most, so that none is cut off
};

/// A sound of `samples`, -1 to 1; what lies beyond is cut off. Its gain makes its loudest second as strong, by the root
/// of the mean square, as a steady level of `level`, 0 to 1 of full scale.
[[nodiscard]] Sound SoundOf(std::span<const float> samples, int rate, double level);

} // namespace audio
