#include "sound/ReadSound.h"

#include <new>
#include <numeric>
#include <optional>
#include <utility>

#include <soxr.h>

namespace sound {
namespace {

/// Takes samples at one rate and appends them to others at another.
class Resampler {
public:
    Resampler(std::int64_t from, std::int64_t to, Samples& samples)
        : samples_(samples),
          ratio_(static_cast<double>(to) / static_cast<double>(from)),
          soxr_(soxr_create(static_cast<double>(from), static_cast<double>(to), 1, nullptr, nullptr, nullptr, nullptr))
    {
        if (soxr_ == nullptr) throw std::bad_alloc();
    }
    ~Resampler() { soxr_delete(soxr_); }
    Resampler(const Resampler&) = delete;
    Resampler& operator=(const Resampler&) = delete;

    void Take(std::span<const float> samples) { Process(samples.data(), samples.size()); }
    void End() { Process(nullptr, 0); }

private:
    void Process(const float* samples, std::size_t count)
    {
        std::size_t made = 0;
        do {
            const auto before = samples_.size();
            const auto room = static_cast<std::size_t>(static_cast<double>(count) * ratio_) + 4096;
            samples_.resize(before + room);
            std::size_t taken = 0;
            soxr_process(soxr_, samples, count, &taken, samples_.data() + before, room, &made);
            samples_.resize(before + made);
            samples += taken;
            count -= taken;
        } while (count > 0 || (samples == nullptr && made > 0));
    }

    Samples& samples_;
    double ratio_;
    soxr_t soxr_;
};

double PowerOf(const Samples& samples)
{
    return std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
}

} // namespace

std::variant<Recording, Refusal> ReadSound(const std::filesystem::path& path, const Part& part, double mostSeconds,
                                           const core::Progress& progress)
{
    Samples samples;
    Samples turned;
    std::optional<Resampler> ofMixed;
    std::optional<Resampler> ofTurned;
    const auto take = [&](const SoundSource& source, const SoundSource::Block& block) {
        if (!ofMixed) ofMixed.emplace(source.Rate(), kRate, samples);
        ofMixed->Take(block.mixed);
        if (block.turned.empty()) return; // of a single channel there is none
        if (!ofTurned) ofTurned.emplace(source.Rate(), kRate, turned);
        ofTurned->Take(block.turned);
    };
    auto streamed = StreamSound(path, part, mostSeconds, take, progress);
    if (const auto* const refusal = std::get_if<Refusal>(&streamed)) return *refusal;
    if (ofMixed) ofMixed->End();
    if (ofTurned) ofTurned->End();
    if (samples.empty()) return NoSoundIn(part); // so few that none is left at this rate
    // Channels of opposite phase, by a cable or a microphone, cancel each other.
    if (constexpr double kMuchMore = 100; PowerOf(turned) > kMuchMore * PowerOf(samples)) samples.swap(turned);
    const auto& stretch = std::get<Stretch>(streamed);
    return Recording{.rate = stretch.rate,
                     .channels = stretch.channels,
                     .seconds = stretch.seconds,
                     .from = stretch.from,
                     .samples = std::move(samples),
                     .isJoined = stretch.isJoined,
                     .told = stretch.told};
}

Samples AtRate(std::span<const float> sound, std::int64_t rate)
{
    Samples samples;
    Resampler resampler(kRate, rate, samples);
    resampler.Take(sound);
    resampler.End();
    return samples;
}

} // namespace sound
