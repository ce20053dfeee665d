#include "sound/ReadSound.h"

#include "files/Files.h"
#include "sound/ChildProgram.h"
#include "sound/SoundSource.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <string>

#include <soxr.h>

namespace sound {
namespace {

namespace fs = std::filesystem;

/// Takes samples at any rate and appends them to a Sound.
class Resampler {
public:
    Resampler(std::int64_t rate, Samples& samples)
        : samples_(samples),
          ratio_(kRate / static_cast<double>(rate)),
          soxr_(soxr_create(static_cast<double>(rate), kRate, 1, nullptr, nullptr, nullptr, nullptr))
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
            if (samples != nullptr) {
                samples += taken;
                count -= taken;
            }
        } while (count > 0 || (samples == nullptr && made > 0));
    }

    Samples& samples_;
    double ratio_;
    soxr_t soxr_;
};

class FileBytes : public ByteSource {
public:
    FileBytes(const fs::path& path, const core::Progress& progress)
        : stream_(path, std::ios::binary),
          size_(static_cast<std::int64_t>(fs::file_size(path))),
          progress_(progress)
    {}

    std::int64_t Read(void* bytes, std::int64_t count) override
    {
        if (!progress_.GoesOn()) return 0;
        stream_.read(static_cast<char*>(bytes), count);
        stream_.clear(); // a read up to the end has left its mark
        return stream_.gcount();
    }
    std::int64_t Position() override { return stream_.tellg(); }
    void Seek(std::int64_t position) override { stream_.seekg(position); }
    std::optional<std::int64_t> Size() override { return size_; }

private:
    std::ifstream stream_;
    std::int64_t size_;
    core::Progress progress_;
};

/// What is read of a source.
class Reading {
public:
    Reading(SoundSource& source, const Part& part, double mostSeconds)
        : source_(source),
          part_(part),
          mostSeconds_(mostSeconds)
    {}

    /// Reads the part, which begins so many seconds behind where the source is.
    [[nodiscard]] std::variant<Recording, Refusal> Read(double behind, const core::Progress& progress) const
    {
        if (progress.IsStopped()) return Refusal{.kind = Refusal::Kind::Stopped};
        if (const auto refusal = RefusalAtOnce()) return *refusal;
        source_.Skip(std::llround(behind * static_cast<double>(source_.Rate())));
        Recording recording{
            .rate = source_.Rate(), .channels = source_.Channels(), .seconds = {}, .from = part_.from, .samples = {}};
        const auto most = FramesToRead();
        const auto read = ReadInto(recording.samples, most, progress);
        if (progress.IsStopped()) return Refusal{.kind = Refusal::Kind::Stopped};
        if (read < most && ExactFrames())
            return Refusal{.kind = Refusal::Kind::Damaged, .seconds = SecondsOf(most - read)};
        if (recording.samples.empty())
            return Refusal{.kind = part_.from > 0 ? Refusal::Kind::NoSoundInPart : Refusal::Kind::NoSound};
        if (SecondsOf(read) > mostSeconds_) return Refusal{.kind = Refusal::Kind::EndlesslyLong, .most = mostSeconds_};
        if (const auto frames = source_.Frames()) recording.seconds = SecondsOf(*frames);
        if (read < most) recording.seconds = part_.from + SecondsOf(read); // its end was found
        return recording;
    }

private:
    [[nodiscard]] double SecondsOf(std::int64_t frames) const
    {
        return static_cast<double>(frames) / static_cast<double>(source_.Rate());
    }
    [[nodiscard]] double LengthAskedFor() const { return part_.length.value_or(HUGE_VAL); }
    [[nodiscard]] std::optional<std::int64_t> ExactFrames() const
    {
        return source_.IsExact() ? source_.Frames() : std::nullopt;
    }

    /// What can be refused before anything is decoded.
    [[nodiscard]] std::optional<Refusal> RefusalAtOnce() const
    {
        const auto rate = source_.Rate();
        if (rate < kLowestRate || rate > kHighestRate) return Refusal{.kind = Refusal::Kind::Rate, .hertz = rate};
        if (const auto frames = ExactFrames()) {
            const auto all = SecondsOf(*frames);
            if (*frames > 0 && all <= part_.from) return Refusal{.kind = Refusal::Kind::EndsBeforePart, .seconds = all};
            if (const auto seconds = std::min(LengthAskedFor(), all - part_.from); seconds > mostSeconds_)
                return Refusal{.kind = Refusal::Kind::TooLong, .seconds = seconds, .most = mostSeconds_};
        }
        if (part_.length && *part_.length > mostSeconds_)
            return Refusal{.kind = Refusal::Kind::TooMuch, .seconds = *part_.length, .most = mostSeconds_};
        return std::nullopt;
    }

    /// At most, of a channel.
    [[nodiscard]] std::int64_t FramesToRead() const
    {
        auto seconds = std::min(LengthAskedFor(), mostSeconds_ + 1);
        if (const auto frames = ExactFrames()) seconds = std::min(seconds, SecondsOf(*frames) - part_.from);
        return std::llround(seconds * static_cast<double>(source_.Rate()));
    }

    std::int64_t ReadInto(Samples& samples, std::int64_t most, const core::Progress& progress) const
    {
        Resampler resampler(source_.Rate(), samples);
        std::int64_t read = 0;
        for (std::span<const float> block; read < most && !(block = source_.Read(most - read)).empty();) {
            resampler.Take(block);
            read += std::ssize(block);
            if (!progress.GoesOn(SecondsOf(read) / SecondsOf(most))) break;
        }
        resampler.End();
        return read;
    }

    SoundSource& source_;
    const Part& part_;
    double mostSeconds_;
};

/// What libsndfile can't read: ffmpeg makes it a format that can be read from a pipe.
std::variant<Recording, Refusal> ReadByFfmpeg(const fs::path& path, const Part& part, double mostSeconds,
                                              const core::Progress& progress)
{
    const auto name = fs::absolute(path).u8string();
    const auto length = std::min(part.length.value_or(HUGE_VAL), mostSeconds + 1);
    const auto ffmpeg =
        ChildProgram::Start("ffmpeg",
                            {"-nostdin", "-v", "quiet", "-protocol_whitelist", "file", "-ss", std::to_string(part.from),
                             "-i", "file:" + std::string(name.begin(), name.end()), "-map", "0:a:0", "-t",
                             std::to_string(length), "-c:a", "pcm_f32be", "-f", "au", "pipe:1"},
                            progress);
    if (!ffmpeg) return Refusal{.kind = Refusal::Kind::NoFfmpeg};
    SoundSource source(*ffmpeg);
    if (!source.IsKnown())
        return Refusal{.kind = progress.IsStopped() ? Refusal::Kind::Stopped : Refusal::Kind::UnknownFormat};
    return Reading(source, part, mostSeconds).Read(0, progress);
}

} // namespace

std::variant<Recording, Refusal> ReadSound(const fs::path& path, const Part& part, double mostSeconds,
                                           const core::Progress& progress)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) throw files::IOException(files::IOException::Kind::System, path, error);
    if (!fs::is_regular_file(status)) // the opening of a pipe would block
        throw files::IOException(files::IOException::Kind::NoOrdinaryFile, path);
    if (fs::is_empty(path)) return Refusal{.kind = Refusal::Kind::EmptyFile};
    FileBytes bytes(path, progress);
    SoundSource source(bytes);
    if (progress.IsStopped()) return Refusal{.kind = Refusal::Kind::Stopped};
    if (!source.IsKnown()) return ReadByFfmpeg(path, part, mostSeconds, progress);
    return Reading(source, part, mostSeconds).Read(part.from, progress);
}

} // namespace sound
