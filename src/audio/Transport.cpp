#include "audio/Transport.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace audio {

std::shared_ptr<const Sound> Transport::Put(std::size_t which, std::shared_ptr<const Sound> sound)
{
    if (which >= sounds_.size()) sounds_.resize(which + 1);
    return std::exchange(sounds_[which], std::move(sound));
}

void Transport::Repeat(const std::optional<Range>& range)
{
    loop_.reset();
    if (range) loop_ = Loop{.begin = SampleAt(range->from), .end = SampleAt(range->to)};
}

void Transport::Play(double from)
{
    isPlaying_ = true;
    next_ = SampleAt(from);
    filled_.reset();
    heard_.reset();
    silentBuffers_ = 0;
}

void Transport::Stop(Time now)
{
    if (!isPlaying_) return;
    next_ = SampleAt(Place(now));
    isPlaying_ = false;
}

void Transport::Fill(std::span<std::int16_t> buffer, Time now)
{
    std::ranges::fill(buffer, std::int16_t{0});
    if (!isPlaying_) return;
    const auto* const sound = Selected();
    const auto end = sound == nullptr ? 0 : sound->size;
    auto loop = loop_;
    if (loop && loop->begin >= std::min(loop->end, end)) loop.reset(); // there is nothing to repeat
    if (loop) loop->end = std::min(loop->end, end);
    next_ = Wrapped(next_, loop);

    heard_ = std::exchange(filled_, Buffer{.first = next_, .size = 0, .loop = loop});
    heardFrom_ = now;
    auto rest = buffer;
    while (!rest.empty()) {
        const auto left = (loop ? loop->end : end) - next_;
        if (left <= 0) break;
        const auto count = std::min(rest.size(), static_cast<std::size_t>(left));
        Read(*sound, next_, rest.first(count));
        filled_->size += static_cast<std::int64_t>(count);
        next_ = Wrapped(next_ + static_cast<std::int64_t>(count), loop);
        rest = rest.subspan(count);
    }
    silentBuffers_ = filled_->size == 0 ? silentBuffers_ + 1 : 0;
    isPlaying_ = silentBuffers_ < 2;
}

double Transport::Place(Time now) const
{
    auto sample = static_cast<double>(next_);
    if (isPlaying_ && heard_) {
        const auto size = static_cast<double>(heard_->size);
        const auto since = std::chrono::duration<double>(now - heardFrom_).count() * rate_;
        const auto whole = static_cast<std::int64_t>(std::clamp(since, 0.0, size));
        sample = static_cast<double>(Wrapped(heard_->first + whole, heard_->loop));
    } else if (isPlaying_ && filled_) {
        sample = static_cast<double>(filled_->first);
    }
    return sample / rate_;
}

std::int64_t Transport::SampleAt(double seconds) const
{
    return std::max<std::int64_t>(0, std::llround(seconds * rate_));
}

const Sound* Transport::Selected() const
{
    return selected_ < sounds_.size() ? sounds_[selected_].get() : nullptr;
}

std::int64_t Transport::Wrapped(std::int64_t sample, const std::optional<Loop>& loop)
{
    if (!loop || sample < loop->end) return sample;
    return loop->begin + (sample - loop->end) % (loop->end - loop->begin);
}

void Transport::Read(const Sound& sound, std::int64_t first, std::span<std::int16_t> into) const
{
    sound.read(first, into);
    const auto factor = std::min(volume_ * sound.gain, sound.mostGain);
    if (factor == 1) return;
    for (auto& sample : into)
        sample = static_cast<std::int16_t>(std::lround(sample * factor));
}

} // namespace audio
