// Spectra.h: a sound's short-time Fourier transform, and the sound again by overlap-add: Allen, Rabiner: A unified
// approach to short-time Fourier analysis and synthesis, 1977.
#pragma once

#include "core/Progress.h"
#include "prepare/Levels.h"

#include <complex>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace prepare {

/// Hann windows of 23 ms, one every 12 ms. They add up to 1, so that gains of 1 give the sound back.
class Spectra {
public:
    static constexpr std::size_t kWindow = 512; // samples; measured: docs/listening.md
    static constexpr std::size_t kHop = kWindow / 2;
    static constexpr std::size_t kTransform = 2 * kWindow; // room for what a gain spreads in time
    static constexpr std::size_t kBins = kTransform / 2 + 1;

    using Bin = std::complex<float>;
    using Gains = std::vector<float>; // one for each bin

    [[nodiscard]] static double HertzOf(std::size_t bin);
    /// The first that lies as high.
    [[nodiscard]] static std::size_t BinFrom(double hertz);

    Spectra(std::span<const float> sound, const core::Progress& progress);

    [[nodiscard]] std::size_t Size() const { return bins_.size() / kBins; }
    [[nodiscard]] std::span<Bin> operator[](std::size_t frame) { return {&bins_[frame * kBins], kBins}; }
    [[nodiscard]] std::span<const Bin> operator[](std::size_t frame) const { return {&bins_[frame * kBins], kBins}; }

    /// The sound again.
    [[nodiscard]] sound::Samples Sound(const core::Progress& progress) const;
    /// The sounds behind two sets of gains; nothing is moved in time.
    [[nodiscard]] std::pair<sound::Samples, sound::Samples> Sounds(const Gains& first, const Gains& second,
                                                                   const core::Progress& progress) const;

private:
    std::size_t samples_;
    std::vector<Bin> bins_;
};

/// The band that each bin belongs to; `count` where it belongs to none.
struct Bands {
    explicit Bands(std::size_t bandCount) : count(bandCount), ofBin(Spectra::kBins, bandCount) {}

    std::size_t count;
    std::vector<std::size_t> ofBin;

    /// Of `frame` in each band.
    [[nodiscard]] Powers PowersOf(std::span<const Spectra::Bin> frame) const;
};

/// Equally wide on the mel scale.
struct MelBands : Bands {
    MelBands(std::size_t bandCount, double lowest, double highest); // Hz
};

/// Thirds of an octave about `lowest` and up.
struct ThirdOctaves : Bands {
    ThirdOctaves(std::size_t bandCount, double lowest); // Hz
};

} // namespace prepare
