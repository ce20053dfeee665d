// WindowSpectrum.h: the spectrum of a sound around a moment.
#pragma once

#include <complex>
#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace prepare {

/// Between its samples' middles: the first and the last aren't 0.
[[nodiscard]] std::vector<float> HannWindow(std::size_t samples);

/// Takes spectra through one window.
class WindowSpectrum {
public:
    /// The transform is even and no shorter than the window; behind that it has zeros.
    WindowSpectrum(std::vector<float> window, std::size_t transform);
    ~WindowSpectrum();

    /// Of the window whose middle lies on sample `centre`; outside of `sound` there is silence. Half as many lines as
    /// the transform has samples, and what lies at half the rate as imaginary part of the first. They hold until the
    /// next call.
    [[nodiscard]] std::span<std::complex<float>> At(std::span<const float> sound, std::size_t centre);

private:
    struct Transform;
    std::unique_ptr<Transform> transform_;
};

} // namespace prepare
