#include "sound/SoundSource.h"

#include <algorithm>
#include <cmath>

namespace sound {
namespace {

constexpr std::int64_t kSamplesAtOnce = 16384; // of all channels
constexpr float kLoudest = 32768;              // full scale of whole numbers that somebody took for fractions

ByteSource& BytesOf(void* data)
{
    return *static_cast<ByteSource*>(data);
}

// How libsndfile reads bytes.
SF_VIRTUAL_IO Calls()
{
    SF_VIRTUAL_IO calls{};
    calls.get_filelen = [](void* data) { return sf_count_t{BytesOf(data).Size().value_or(SF_COUNT_MAX)}; };
    calls.seek = [](sf_count_t offset, int whence, void* data) -> sf_count_t {
        auto& bytes = BytesOf(data);
        const auto from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? bytes.Position() : bytes.Size().value_or(0);
        bytes.Seek(from + offset);
        return bytes.Position();
    };
    calls.read = [](void* to, sf_count_t count, void* data) -> sf_count_t { return BytesOf(data).Read(to, count); };
    calls.tell = [](void* data) -> sf_count_t { return BytesOf(data).Position(); };
    return calls;
}

/// What a calculation can take: files of fractions may hold anything.
float Finite(float sample)
{
    return std::isfinite(sample) ? std::clamp(sample, -kLoudest, kLoudest) : 0;
}

} // namespace

SoundSource::SoundSource(ByteSource& bytes) : canSeek_(bytes.Size().has_value())
{
    auto calls = Calls();
    file_.reset(sf_open_virtual(&calls, SFM_READ, &info_, &bytes));
}

std::optional<std::int64_t> SoundSource::Frames() const
{
    if (!canSeek_ || info_.seekable == 0 || info_.frames < 0 || info_.frames == SF_COUNT_MAX) return std::nullopt;
    return info_.frames;
}

void SoundSource::Skip(std::int64_t frames)
{
    if (frames == 0 || (canSeek_ && info_.seekable != 0 && sf_seek(file_.get(), frames, SEEK_CUR) >= 0)) return;
    while (frames > 0) {
        const auto read = static_cast<std::int64_t>(Read(frames).size());
        if (read == 0) return;
        frames -= read;
    }
}

std::span<const float> SoundSource::Read(std::int64_t most)
{
    const auto count = static_cast<std::size_t>(info_.channels);
    const auto frames = std::min(most, std::max<std::int64_t>(kSamplesAtOnce / info_.channels, 1));
    channels_.resize(static_cast<std::size_t>(frames) * count);
    const auto read =
        static_cast<std::size_t>(std::max<sf_count_t>(sf_readf_float(file_.get(), channels_.data(), frames), 0));
    mono_.resize(read);
    for (std::size_t frame = 0; frame < read; ++frame) {
        float sum = 0;
        for (std::size_t channel = 0; channel < count; ++channel)
            sum += Finite(channels_[frame * count + channel]);
        mono_[frame] = sum / static_cast<float>(count);
    }
    return mono_;
}

} // namespace sound
