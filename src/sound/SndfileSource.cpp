#include "sound/SndfileSource.h"

#include <array>
#include <cmath>
#include <regex>
#include <string>

namespace sound {
namespace {

ByteSource& BytesOf(void* data)
{
    return *static_cast<ByteSource*>(data);
}

// How libsndfile reads bytes.
SF_VIRTUAL_IO Calls()
{
    SF_VIRTUAL_IO calls{};
    calls.get_filelen = [](void* data) { return sf_count_t{BytesOf(data).Size().value_or(SF_COUNT_MAX)}; };
    calls.seek = [](sf_count_t by, int whence, void* data) -> sf_count_t { return BytesOf(data).Seek(by, whence); };
    calls.read = [](void* to, sf_count_t count, void* data) -> sf_count_t { return BytesOf(data).Read(to, count); };
    calls.tell = [](void* data) -> sf_count_t { return BytesOf(data).Position(); };
    return calls;
}

/// How many times the data that are there the header tells. The library takes what is there and leaves a word of it in
/// its log. Programs that can't go back to the header leave lengths near the largest in it: they tell nothing.
double ToldOf(SNDFILE* file)
{
    constexpr double kUnknown = 0x7FFFF000; // bytes
    static const std::regex kWord(R"((data|Data Size|SSND|riff) *: (\d+) \(should be (\d+)\))");
    std::array<char, 16384> log{};
    std::cmatch word;
    sf_command(file, SFC_GET_LOG_INFO, log.data(), static_cast<int>(log.size()));
    if (!std::regex_search(log.data(), word, kWord)) return 1;
    const auto told = std::stod(word[2]);
    const auto there = std::stod(word[3]);
    return told < kUnknown && there > 0 && told > there ? told / there : 1;
}

} // namespace

SndfileSource::SndfileSource(ByteSource& bytes, bool isCut) : canSeek_(bytes.Size().has_value()), isCut_(isCut)
{
    auto calls = Calls();
    file_.reset(sf_open_virtual(&calls, SFM_READ, &info_, &bytes));
    if (file_ && Frames()) info_.frames = std::llround(static_cast<double>(info_.frames) * ToldOf(file_.get()));
}

std::optional<std::int64_t> SndfileSource::Frames() const
{
    if (!canSeek_ || info_.seekable == 0 || info_.frames < 0 || info_.frames == SF_COUNT_MAX) return std::nullopt;
    return info_.frames;
}

void SndfileSource::Skip(std::int64_t frames)
{
    if (frames == 0 || (canSeek_ && info_.seekable != 0 && sf_seek(file_.get(), frames, SEEK_CUR) >= 0)) return;
    SoundSource::Skip(frames);
}

std::int64_t SndfileSource::ReadFrames(float* samples, std::int64_t frames)
{
    const auto read = sf_readf_float(file_.get(), samples, frames);
    hasFailed_ = hasFailed_ || sf_error(file_.get()) != SF_ERR_NO_ERROR; // which the next call forgets
    return read;
}

} // namespace sound
