// LongFrames.h: a sound in frames that are long enough to tell the tones of a chord apart. They are taken, changed and
// added up again one by one, so that a long sound needs no memory for them (Allen, Rabiner: A unified approach to
// short-time Fourier analysis and synthesis, 1977).
#pragma once

#include "prepare/WindowSpectrum.h"
#include "sound/Sound.h"

#include <complex>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace prepare {

/// Through the root of a Hann window of 93 ms both ways, one every 46 ms.
class LongFrames {
public:
    static constexpr std::size_t kWindow = 2048; // samples; measured: docs/listening.md
    static constexpr std::size_t kHop = kWindow / 2;
    static constexpr std::size_t kBins = kWindow / 2; // all but the one at half the rate, which nobody hears

    using Bin = std::complex<float>;

    LongFrames();
    ~LongFrames();

    /// Those that a sound of so many samples has a part in.
    [[nodiscard]] static std::size_t CountIn(std::size_t samples);
    [[nodiscard]] static double HertzOf(std::size_t bin);
    /// The frame's bins, until the next call.
    [[nodiscard]] std::span<Bin> Take(std::span<const float> sound, std::size_t frame);
    /// Adds the frame to `sum`. All frames of a sound add up to it.
    void Add(std::span<const Bin> bins, std::size_t frame, sound::Samples& sum);

private:
    struct Back;
    std::vector<float> window_;
    WindowSpectrum spectrum_;
    std::unique_ptr<Back> back_;
};

} // namespace prepare
