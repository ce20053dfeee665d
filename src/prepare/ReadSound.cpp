#include "prepare/ReadSound.h"

#include "prepare/ChildProgram.h"
#include "prepare/Refusal.h"
#include "prepare/SoundSource.h"
#include "prepare/TimeText.h"

#include <algorithm>
#include <cmath>

#include <soxr.h>

namespace prepare {
namespace {

namespace fs = std::filesystem;

// No microphone and no machine makes others. At the ends of what a file can say a second is an hour's work, or nothing.
constexpr std::int64_t kLowestRate = 1000;
constexpr std::int64_t kHighestRate = 1'000'000;

/// Takes samples at any rate and appends them to a Sound.
class Resampler {
public:
    Resampler(std::int64_t rate, Sound& sound)
        : sound_(sound),
          ratio_(kSoundRate / static_cast<double>(rate)),
          soxr_(soxr_create(static_cast<double>(rate), kSoundRate, 1, nullptr, nullptr, nullptr, nullptr))
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
            const auto before = sound_.size();
            const auto room = static_cast<std::size_t>(static_cast<double>(count) * ratio_) + 4096;
            sound_.resize(before + room);
            std::size_t taken = 0;
            soxr_process(soxr_, samples, count, &taken, sound_.data() + before, room, &made);
            sound_.resize(before + made);
            if (samples != nullptr) {
                samples += taken;
                count -= taken;
            }
        } while (count > 0 || (samples == nullptr && made > 0));
    }

    Sound& sound_;
    double ratio_;
    soxr_t soxr_;
};

std::string TooLong(const std::string& seconds, double mostSeconds)
{
    return seconds + ", and at this rate the window takes " + TimeText(mostSeconds) +
           " at most. Take a part of it, for example with --from 0:30 --length 0:20.";
}

/// Refuses what can be refused before anything is decoded, and tells how many samples of a channel to read at most.
std::int64_t FramesToRead(const SoundSource& source, const Part& part, double mostSeconds)
{
    const auto rate = source.Rate();
    if (rate < kLowestRate || rate > kHighestRate)
        throw Refusal("It has " + std::to_string(rate) + " samples a second. From " + std::to_string(kLowestRate) +
                      " to " + std::to_string(kHighestRate) + " can be read.");
    auto seconds = part.length.value_or(HUGE_VAL);
    if (const auto frames = source.Frames(); frames && source.IsExact()) {
        const auto all = static_cast<double>(*frames) / static_cast<double>(rate);
        if (*frames > 0 && all <= part.from) throw Refusal("It ends at " + TimeText(all) + ", before --from.");
        seconds = std::min(seconds, all - part.from);
        if (seconds > mostSeconds) throw Refusal(TooLong("It lasts " + TimeText(seconds), mostSeconds));
    }
    if (part.length && *part.length > mostSeconds)
        throw Refusal(TooLong("--length asks for " + TimeText(*part.length), mostSeconds));
    return std::llround(std::min(seconds, mostSeconds + 1) * static_cast<double>(rate));
}

/// Reads what `source` has from here on, where `part` begins: `most` samples of a channel, or all.
Recording ReadOn(SoundSource& source, std::int64_t most, const Part& part, double mostSeconds)
{
    const auto secondsOf = [&](std::int64_t frames) {
        return static_cast<double>(frames) / static_cast<double>(source.Rate());
    };
    Recording recording{.rate = source.Rate(), .channels = source.Channels(), .seconds = {}, .sound = {}};

    Resampler resampler(source.Rate(), recording.sound);
    std::int64_t read = 0;
    for (std::span<const float> samples; read < most && !(samples = source.Read(most - read)).empty();) {
        resampler.Take(samples);
        read += static_cast<std::int64_t>(samples.size());
    }
    resampler.End();
    if (read < most && source.Frames() && source.IsExact())
        throw Refusal("It is damaged: " + TimeText(secondsOf(most - read)) + " of its sound can't be read.");
    if (recording.sound.empty())
        throw Refusal(part.from > 0 ? "There is no sound in it behind --from." : "There is no sound in it.");
    if (secondsOf(read) > mostSeconds)
        throw Refusal(TooLong("It lasts longer than " + TimeText(mostSeconds), mostSeconds));
    if (const auto frames = source.Frames()) recording.seconds = secondsOf(*frames);
    if (read < most) recording.seconds = part.from + secondsOf(read); // its end was found
    return recording;
}

/// What libsndfile can't read: ffmpeg makes it a format that can be read from a pipe.
Recording ReadByFfmpeg(const fs::path& path, const Part& part, double mostSeconds)
{
    const auto name = fs::absolute(path).u8string();
    const auto length = std::min(part.length.value_or(HUGE_VAL), mostSeconds + 1);
    const auto ffmpeg = ChildProgram::Start(
        "ffmpeg", {"-nostdin", "-v", "quiet", "-protocol_whitelist", "file", "-ss", std::to_string(part.from), "-i",
                   "file:" + std::string(name.begin(), name.end()), "-map", "0:a:0", "-t", std::to_string(length),
                   "-c:a", "pcm_f32be", "-f", "au", "pipe:1"});
    if (!ffmpeg)
        throw Refusal("It is damaged, or of a kind that can be read only with the program ffmpeg, which isn't "
                      "installed. Debian and Ubuntu: sudo apt install ffmpeg. Windows: winget install ffmpeg.");
    SoundSource source(ffmpeg->Output());
    if (!source.IsKnown()) throw Refusal("This is no sound file that libsndfile or ffmpeg can read, or it is damaged.");
    return ReadOn(source, FramesToRead(source, part, mostSeconds), part, mostSeconds);
}

} // namespace

Recording ReadSound(const fs::path& path, const Part& part, double mostSeconds)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) throw Refusal(error ? error.message() : "There is no such file.");
    if (!fs::is_regular_file(status)) throw Refusal("This is no ordinary file."); // opening a pipe would block
    if (fs::is_empty(path)) throw Refusal("The file is empty.");
    SoundSource source(path);
    if (!source.IsKnown()) return ReadByFfmpeg(path, part, mostSeconds);
    const auto most = FramesToRead(source, part, mostSeconds);
    source.Skip(std::llround(part.from * static_cast<double>(source.Rate())));
    return ReadOn(source, most, part, mostSeconds);
}

} // namespace prepare
