#include "prepare/Peaks.h"

#include "sound/Sound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstddef>

namespace prepare {
namespace {

constexpr std::size_t kWindow = 2048;    // samples; measured: docs/listening.md
constexpr std::size_t kTransform = 4096; // the window and as many zeros, so that a peak has three lines at least
constexpr float kLineHertz = static_cast<float>(sound::kRate) / kTransform;
constexpr auto kFirstLine = static_cast<std::size_t>(35 / kLineHertz);  // below the lowest pitch
constexpr auto kLastLine = static_cast<std::size_t>(5200 / kLineHertz); // measured, too
// On each side, 86 Hz: about the distance of the lowest pitch's partials; measured, too.
constexpr std::size_t kNeighbours = 16;

} // namespace

PeakFinder::PeakFinder() : spectrum_(HannWindow(kWindow), kTransform)
{}

std::vector<Peak> PeakFinder::PeaksAt(std::span<const float> sound, std::size_t centre)
{
    const auto lines = spectrum_.At(sound, centre);
    std::array<float, kLastLine + kNeighbours + 1> heights;
    std::transform(lines.begin(), lines.begin() + heights.size(), heights.begin(),
                   [](std::complex<float> line) { return std::sqrt(std::norm(line)); });

    std::vector<Peak> peaks;
    static_assert(kFirstLine < kNeighbours);
    float sum = 0;
    for (std::size_t k = 0; k < kFirstLine + kNeighbours; ++k)
        sum += heights[k];
    for (auto k = kFirstLine; k <= kLastLine; ++k) {
        sum += heights[k + kNeighbours];
        if (k > kNeighbours) sum -= heights[k - kNeighbours - 1];
        const float below = heights[k - 1], here = heights[k], above = heights[k + 1];
        const float mean = sum / static_cast<float>(2 * kNeighbours + 1);
        if (here <= below || here < above || here <= mean) continue;
        // The top of the parabola through the three lines' logarithms: a Hann window's peak is nearly one.
        // 1e-9 since 0 has no logarithm.
        const float a = std::log(below + 1e-9F), b = std::log(here + 1e-9F), c = std::log(above + 1e-9F);
        const float bend = a - 2 * b + c; // 0 where all three are next to nothing
        const float offset = bend < 0 ? std::clamp(0.5F * (a - c) / bend, -0.5F, 0.5F) : 0;
        peaks.push_back({(static_cast<float>(k) + offset) * kLineHertz, std::sqrt(here - mean)});
    }
    return peaks;
}

} // namespace prepare
