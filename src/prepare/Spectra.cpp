#include "prepare/Spectra.h"

#include "prepare/WindowSpectrum.h"

#include <kissfft.hh>

#include <algorithm>
#include <cmath>

namespace prepare {
namespace {

constexpr auto kMargin = (Spectra::kTransform - Spectra::kWindow) / 2; // on either side of the window

constexpr auto kShift = kMargin + Spectra::kHop; // from a frame's first sample to where the sound begins

/// The inverse transform of two real sounds as one complex one.
class Back {
public:
    /// The one in the real parts, the other in the imaginary ones; `bins` gives bin k of both.
    template <typename BinsAt>
    const std::vector<Spectra::Bin>& Of(const BinsAt& bins)
    {
        for (std::size_t k = 0; k < Spectra::kBins; ++k) {
            auto [one, other] = bins(k);
            one /= static_cast<float>(Spectra::kTransform);
            other /= static_cast<float>(Spectra::kTransform);
            in_[k] = {one.real() - other.imag(), one.imag() + other.real()};
            if (k > 0) in_[Spectra::kTransform - k] = {one.real() + other.imag(), other.real() - one.imag()};
        }
        transform_.transform(in_.data(), out_.data());
        return out_;
    }

private:
    kissfft<float> transform_{Spectra::kTransform, true};
    std::vector<Spectra::Bin> in_ = std::vector<Spectra::Bin>(Spectra::kTransform);
    std::vector<Spectra::Bin> out_ = std::vector<Spectra::Bin>(Spectra::kTransform);
};

double MelOf(double hertz)
{
    return std::log(1 + hertz / 700); // Hz, by the scale; its factor is left out
}

} // namespace

double Spectra::HertzOf(std::size_t bin)
{
    return static_cast<double>(bin) * sound::kRate / kTransform;
}

std::size_t Spectra::BinFrom(double hertz)
{
    return static_cast<std::size_t>(std::ceil(hertz * kTransform / sound::kRate));
}

Spectra::Spectra(std::span<const float> sound, const core::Progress& progress)
    : samples_(sound.size()),
      bins_((sound.size() / kHop + 2) * kBins)
{
    const auto window = HannWindow(kWindow);
    const kissfft<float> transform(kTransform / 2, false);
    std::vector<float> in(kTransform);
    for (std::size_t frame = 0; frame < Size() && progress.GoesOn(); ++frame) {
        std::ranges::fill(in, 0.0F);
        const auto start = frame * kHop; // of the window; the sound is taken to begin kHop samples later
        for (auto i = start < kHop ? kHop - start : 0; i < kWindow && start + i - kHop < samples_; ++i)
            in[kMargin + i] = window[i] * sound[start + i - kHop];
        auto* const out = &bins_[frame * kBins];
        transform.transform_real(in.data(), out);
        out[kBins - 1] = out[0].imag(); // where the library packs it
        out[0] = out[0].real();
    }
}

sound::Samples Spectra::Sound(const core::Progress& progress) const
{
    Back back;
    std::vector<float> sum((Size() + 1) * kHop + kTransform);
    const std::vector<Bin> none(kBins);
    for (std::size_t frame = 0; frame < Size() && progress.GoesOn(); frame += 2) {
        const auto one = (*this)[frame];
        const auto other = frame + 1 < Size() ? (*this)[frame + 1] : none;
        const auto& both = back.Of([&](std::size_t k) { return std::pair(one[k], other[k]); });
        for (std::size_t i = 0; i < kTransform; ++i) {
            sum[frame * kHop + i] += both[i].real();
            sum[(frame + 1) * kHop + i] += both[i].imag();
        }
    }
    const auto first = sum.begin() + kShift;
    return {first, first + static_cast<std::ptrdiff_t>(samples_)};
}

std::pair<sound::Samples, sound::Samples> Spectra::Sounds(const Gains& first, const Gains& second,
                                                          const core::Progress& progress) const
{
    Back back;
    std::vector<Bin> sum(Size() * kHop + kTransform);
    for (std::size_t frame = 0; frame < Size() && progress.GoesOn(); ++frame) {
        const auto bins = (*this)[frame];
        const auto& both = back.Of([&](std::size_t k) { return std::pair(bins[k] * first[k], bins[k] * second[k]); });
        for (std::size_t i = 0; i < kTransform; ++i)
            sum[frame * kHop + i] += both[i];
    }
    std::pair<sound::Samples, sound::Samples> sounds;
    sounds.first.reserve(samples_);
    sounds.second.reserve(samples_);
    for (std::size_t i = 0; i < samples_; ++i) {
        sounds.first.push_back(sum[i + kShift].real());
        sounds.second.push_back(sum[i + kShift].imag());
    }
    return sounds;
}

MelBands::MelBands(std::size_t bandCount, double lowest, double highest) : Bands(bandCount)
{
    for (std::size_t k = 0; k < Spectra::kBins; ++k) {
        const auto hertz = Spectra::HertzOf(k);
        if (hertz < lowest || hertz >= highest) continue;
        const auto place = (MelOf(hertz) - MelOf(lowest)) / (MelOf(highest) - MelOf(lowest));
        ofBin[k] = static_cast<std::size_t>(place * static_cast<double>(count));
    }
}

ThirdOctaves::ThirdOctaves(std::size_t bandCount, double lowest) : Bands(bandCount)
{
    for (std::size_t k = 1; k < Spectra::kBins; ++k) {
        const auto place = 3 * std::log2(Spectra::HertzOf(k) / lowest) + 0.5;
        if (place >= 0 && place < static_cast<double>(count)) ofBin[k] = static_cast<std::size_t>(place);
    }
}

Powers Bands::PowersOf(std::span<const Spectra::Bin> frame) const
{
    Powers powers(count + 1); // and one for what belongs to none
    for (std::size_t k = 0; k < frame.size(); ++k)
        powers[ofBin[k]] += std::norm(frame[k]);
    powers.pop_back();
    return powers;
}

} // namespace prepare
