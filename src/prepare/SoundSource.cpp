#include "prepare/SoundSource.h"

#include <algorithm>
#include <cmath>

namespace prepare {
namespace {

constexpr std::int64_t kSamplesAtOnce = 16384; // of all channels
constexpr float kLoudest = 32768;              // full scale of whole numbers that somebody took for fractions

// How libsndfile reads a stream. It is given one instead of a name, since names differ between systems.
SF_VIRTUAL_IO StreamCalls()
{
    const auto streamOf = [](void* data) -> std::ifstream& { return *static_cast<std::ifstream*>(data); };
    static const auto seek = [=](sf_count_t offset, int whence, void* data) -> sf_count_t {
        auto& stream = streamOf(data);
        stream.clear(); // a read up to the end has left its mark
        stream.seekg(offset, whence == SEEK_SET ? std::ios::beg : whence == SEEK_CUR ? std::ios::cur : std::ios::end);
        return stream.tellg();
    };
    SF_VIRTUAL_IO calls{};
    calls.seek = [](sf_count_t offset, int whence, void* data) { return seek(offset, whence, data); };
    calls.get_filelen = [](void* data) {
        const auto here = seek(0, SEEK_CUR, data);
        const auto length = seek(0, SEEK_END, data);
        seek(here, SEEK_SET, data);
        return length;
    };
    calls.read = [](void* bytes, sf_count_t count, void* data) -> sf_count_t {
        auto& stream = *static_cast<std::ifstream*>(data);
        stream.read(static_cast<char*>(bytes), count);
        return stream.gcount();
    };
    calls.tell = [](void* data) { return seek(0, SEEK_CUR, data); };
    return calls;
}

/// What a calculation can take: files of fractions may hold anything.
float Finite(float sample)
{
    return std::isfinite(sample) ? std::clamp(sample, -kLoudest, kLoudest) : 0;
}

} // namespace

SoundSource::SoundSource(const std::filesystem::path& path) : stream_(path, std::ios::binary)
{
    if (!stream_) return;
    auto calls = StreamCalls();
    file_.reset(sf_open_virtual(&calls, SFM_READ, &info_, &stream_));
}

SoundSource::SoundSource(int pipe) : file_(sf_open_fd(pipe, SFM_READ, &info_, SF_FALSE))
{}

std::optional<std::int64_t> SoundSource::Frames() const
{
    if (info_.seekable == 0 || info_.frames < 0 || info_.frames == SF_COUNT_MAX) return std::nullopt;
    return info_.frames;
}

void SoundSource::Skip(std::int64_t frames)
{
    if (frames == 0 || (info_.seekable != 0 && sf_seek(file_.get(), frames, SEEK_CUR) >= 0)) return;
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

} // namespace prepare
