#include "prepare/LongFrames.h"

#include <kissfft.hh>

#include <algorithm>
#include <cmath>

namespace prepare {
namespace {

std::vector<float> RootHannWindow()
{
    auto window = HannWindow(LongFrames::kWindow);
    std::ranges::transform(window, window.begin(), [](float weight) { return std::sqrt(weight); });
    return window;
}

constexpr auto kBefore = LongFrames::kWindow - LongFrames::kHop; // samples from the first frame's to the sound's first

} // namespace

struct LongFrames::Back {
    kissfft<float> transform{kWindow, true};
    std::vector<Bin> in = std::vector<Bin>(kWindow); // its upper half stays 0: the other half of a real sound
    std::vector<Bin> out = std::vector<Bin>(kWindow);
};

LongFrames::LongFrames() : window_(RootHannWindow()), spectrum_(window_, kWindow), back_(std::make_unique<Back>())
{}

LongFrames::~LongFrames() = default;

std::size_t LongFrames::CountIn(std::size_t samples)
{
    return (samples + kWindow - 1) / kHop;
}

double LongFrames::HertzOf(std::size_t bin)
{
    return static_cast<double>(bin) * sound::kRate / kWindow;
}

std::span<LongFrames::Bin> LongFrames::Take(std::span<const float> sound, std::size_t frame)
{
    const auto bins = spectrum_.At(sound, frame * kHop + kWindow / 2 - kBefore);
    bins[0] = bins[0].real(); // its other part is the bin at half the rate
    return bins;
}

void LongFrames::Add(std::span<const Bin> bins, std::size_t frame, sound::Samples& sum)
{
    constexpr float kScale = 2.0F / kWindow; // of one half of the bins, of a transform
    auto& [transform, in, out] = *back_;
    std::ranges::copy(bins, in.begin());
    in[0] *= 0.5F; // has no other half
    transform.transform(in.data(), out.data());
    const auto start = frame * kHop; // of the window; the sound begins kBefore samples later
    for (std::size_t i = start < kBefore ? kBefore - start : 0; i < kWindow && start + i - kBefore < sum.size(); ++i)
        sum[start + i - kBefore] += kScale * window_[i] * out[i].real();
}

} // namespace prepare
