#include "prepare/WindowSpectrum.h"

#include <kissfft.hh>

#include <cmath>
#include <numbers>
#include <utility>

namespace prepare {

std::vector<float> HannWindow(std::size_t samples)
{
    std::vector<float> window(samples);
    for (std::size_t i = 0; i < samples; ++i)
        window[i] = static_cast<float>(
            0.5 - 0.5 * std::cos(2 * std::numbers::pi * (static_cast<double>(i) + 0.5) / static_cast<double>(samples)));
    return window;
}

struct WindowSpectrum::Transform {
    kissfft<float> transform; // counts pairs of samples
    std::vector<float> window;
    std::vector<float> samples; // behind the window always 0
    std::vector<std::complex<float>> lines;
};

WindowSpectrum::WindowSpectrum(std::vector<float> window, std::size_t transform)
    : transform_(new Transform{.transform = {transform / 2, false},
                               .window = std::move(window),
                               .samples = std::vector<float>(transform),
                               .lines = std::vector<std::complex<float>>(transform / 2)})
{}

WindowSpectrum::~WindowSpectrum() = default;

std::span<std::complex<float>> WindowSpectrum::At(std::span<const float> sound, std::size_t centre)
{
    auto& [transform, window, samples, lines] = *transform_;
    for (std::size_t i = 0; i < window.size(); ++i) {
        const auto at = centre + i - window.size() / 2; // wraps below 0, and then lies behind the end
        samples[i] = at < sound.size() ? sound[at] * window[i] : 0;
    }
    transform.transform_real(samples.data(), lines.data());
    return lines;
}

} // namespace prepare
