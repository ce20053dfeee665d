#include "studio/qt/Listening.h"

#include <algorithm>
#include <cmath>

namespace studio {
namespace {

/// The loudest second of the source, by the root of the mean square, is as strong as a square wave of half of full
/// scale, which is what the machine's sound is: so a change between the two isn't one of loudness.
constexpr double kSourceLevel = 0.49;

/// `playable` on an axis that begins at `begin` seconds of the file: silent before its own beginning.
audio::Sound SoundOf(std::shared_ptr<const Result> result, const Playable& playable, double begin)
{
    const auto before = std::max<std::int64_t>(0, std::llround((playable.from - begin) * kListenRate));
    const auto& samples = playable.samples;
    audio::Sound sound{.size = samples.empty() ? 0 : before + std::ssize(samples), .read = {}};
    sound.read = [result = std::move(result), &samples, before](std::int64_t first, std::span<std::int16_t> into) {
        const auto silent = std::clamp<std::int64_t>(before - first, 0, std::ssize(into));
        std::fill_n(into.begin(), silent, std::int16_t{0});
        const auto next = std::max<std::int64_t>(0, first - before);
        std::copy_n(samples.begin() + next, std::ssize(into) - silent, into.begin() + silent);
    };
    return sound;
}

/// Gain and most gain of the source; a pass over its samples.
void MakeAsLoud(audio::Sound& sound, const std::vector<std::int16_t>& samples)
{
    constexpr double kFullScale = 32767;
    int peak = 1;
    std::int64_t sum = 0; // of squares: exact
    std::int64_t most = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto square = [&](std::size_t at) { return std::int64_t{samples[at]} * samples[at]; };
        peak = std::max(peak, std::abs(int{samples[i]}));
        sum += square(i) - (i >= kListenRate ? square(i - kListenRate) : 0);
        most = std::max(most, sum);
    }
    const auto count = std::clamp<double>(static_cast<double>(samples.size()), 1, kListenRate);
    if (most > 0) sound.gain = kSourceLevel * kFullScale / std::sqrt(static_cast<double>(most) / count);
    sound.mostGain = kFullScale / peak;
}

} // namespace

void Listening::Take(std::shared_ptr<const Result> result)
{
    if (result == result_) return;
    const auto before = Now();
    const auto begin = Range().from;
    result_ = std::move(result);
    if (!result_) {
        player_.Stop();
        return;
    }
    auto source = SoundOf(result_, result_->source, result_->part.from);
    MakeAsLoud(source, result_->source.samples);
    player_.Put(static_cast<std::size_t>(Heard::Source), std::move(source));
    player_.Put(static_cast<std::size_t>(Heard::Machine), SoundOf(result_, result_->machine, result_->part.from));
    if (!CanPlay(selected_)) Select(Heard::Machine);
    SetRepeat(repeats_);
    if (before.isPlaying && begin != Range().from) Play(before.second);
}

bool Listening::CanPlay(Heard heard) const
{
    return result_ && !(heard == Heard::Source ? result_->source : result_->machine).samples.empty();
}

Span Listening::Range() const
{
    return result_ ? result_->part : Span();
}

void Listening::Select(Heard heard)
{
    selected_ = heard;
    player_.Select(static_cast<std::size_t>(heard));
}

void Listening::Play(double second)
{
    const auto range = Range();
    if (CanPlay(selected_)) player_.Play(second < range.from || second >= range.to ? 0 : second - range.from);
}

void Listening::SetRepeat(bool repeats)
{
    repeats_ = repeats;
    player_.Repeat(repeats ? std::optional(audio::Range{.from = 0, .to = Range().Length()}) : std::nullopt);
}

Listening::Status Listening::Now() const
{
    const auto status = player_.Now();
    return {.isPlaying = status.isPlaying, .second = Range().from + status.place, .failure = status.failure};
}

} // namespace studio
