#include "sound/ReadSound.h"

#include "sound/FfmpegSource.h"
#include "sound/FileBytes.h"
#include "sound/Mp3Source.h"
#include "sound/OggPages.h"
#include "sound/SndfileSource.h"
#include "sound/UnfinishedWave.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <numeric>
#include <string>
#include <string_view>

#include <soxr.h>

namespace sound {
namespace {

namespace fs = std::filesystem;

using Result = std::variant<Recording, Refusal>;

struct Request {
    const fs::path& path;
    const Part& part;
    double mostSeconds;
};

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

bool ReachesEnd(const Recording& recording)
{
    constexpr double kClose = 0.1; // seconds: where a length is guessed
    return !recording.seconds || recording.from + SecondsAt(recording.samples.size()) > *recording.seconds - kClose;
}

/// What is read of a source.
class Reading {
public:
    Reading(SoundSource& source, const Request& request)
        : source_(source),
          part_(request.part),
          mostSeconds_(request.mostSeconds)
    {}

    /// Reads the part, which begins so many seconds behind where the source is.
    [[nodiscard]] Result Read(double behind, const core::Progress& progress) const
    {
        if (const auto refusal = RefusalAtOnce()) return *refusal;
        const auto begin = FramesIn(behind);
        source_.Skip(begin);
        Recording recording{
            .rate = source_.Rate(), .channels = source_.Channels(), .seconds = {}, .from = part_.from, .samples = {}};
        const auto most = FramesToRead();
        const auto read = ReadInto(recording.samples, most, progress);
        const bool isAtEnd = read < most;
        if (isAtEnd && (begin + read < source_.Least() || source_.IsBroken())) return Damage(read);
        if (recording.samples.empty())
            return Refusal{.kind = part_.from > 0 ? Refusal::Kind::NoSoundInPart : Refusal::Kind::NoSound};
        if (SecondsOf(read) > mostSeconds_) return Refusal{.kind = Refusal::Kind::EndlesslyLong, .most = mostSeconds_};
        if (const auto frames = source_.Frames()) recording.seconds = SecondsOf(*frames);
        if (!isAtEnd) return recording;
        recording.seconds = part_.from + SecondsOf(read); // its end was found
        constexpr double kEarlier = 0.5;                  // seconds
        if (const auto told = source_.Told();
            *recording.seconds < std::min(told.value_or(0), part_.from + LengthAskedFor()) - kEarlier)
            recording.told = told;
        return recording;
    }

private:
    [[nodiscard]] double SecondsOf(std::int64_t frames) const
    {
        return static_cast<double>(frames) / static_cast<double>(source_.Rate());
    }
    [[nodiscard]] std::int64_t FramesIn(double seconds) const
    {
        return std::llround(seconds * static_cast<double>(source_.Rate()));
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
            if (*frames > 0 && *frames <= FramesIn(part_.from))
                return Refusal{.kind = Refusal::Kind::EndsBeforePart, .seconds = all};
            if (const auto seconds = std::min(LengthAskedFor(), all - part_.from); seconds > mostSeconds_)
                return Refusal{.kind = Refusal::Kind::TooLong, .seconds = seconds, .most = mostSeconds_};
        }
        return std::nullopt;
    }

    /// At most, of a channel.
    [[nodiscard]] std::int64_t FramesToRead() const
    {
        const auto most = FramesIn(std::min(LengthAskedFor(), mostSeconds_ + 1));
        const auto frames = ExactFrames();
        return frames ? std::min(most, *frames - FramesIn(part_.from)) : most;
    }

    /// The part ends too early, behind so many frames.
    [[nodiscard]] Refusal Damage(std::int64_t read) const
    {
        if (read == 0 && part_.from > 0) return {.kind = Refusal::Kind::DamagedBeforePart};
        const auto whole = std::floor((part_.from + SecondsOf(read)) * 10) / 10; // never more, as it is shown
        return {.kind = Refusal::Kind::Damaged, .seconds = whole};
    }

    std::int64_t ReadInto(Samples& samples, std::int64_t most, const core::Progress& progress) const
    {
        Samples turned;
        Resampler ofMixed(source_.Rate(), samples);
        Resampler ofTurned(source_.Rate(), turned);
        std::int64_t read = 0;
        for (SoundSource::Block block; read < most && !(block = source_.Read(most - read)).mixed.empty();) {
            ofMixed.Take(block.mixed);
            if (!block.turned.empty()) ofTurned.Take(block.turned); // of a single channel there is none
            read += std::ssize(block.mixed);
            if (!progress.GoesOn(SecondsOf(read) / SecondsOf(most))) break;
        }
        ofMixed.End();
        ofTurned.End();
        // Channels of opposite phase, by a cable or a microphone, cancel each other.
        if (constexpr double kMuchMore = 100; PowerOf(turned) > kMuchMore * PowerOf(samples)) samples.swap(turned);
        return read;
    }

    SoundSource& source_;
    const Part& part_;
    double mostSeconds_;
};

/// What nothing else can read: ffmpeg makes it a format that can be read from a pipe.
Result ReadByFfmpeg(const Request& request, const core::Progress& progress)
{
    using enum FfmpegSource::Way;
    const auto from = request.part.from;
    const auto length = std::min(request.part.length.value_or(HUGE_VAL), request.mostSeconds + 1);
    auto started = FfmpegSource::Start(request.path, Seek, from, length, progress);
    const auto* refusal = std::get_if<Refusal>(&started);
    if (from > 0 && refusal != nullptr && refusal->kind == Refusal::Kind::UnknownFormat) {
        started = FfmpegSource::Start(request.path, DecodeAll, from, length, progress);
        refusal = std::get_if<Refusal>(&started);
    }
    if (refusal != nullptr) return *refusal;
    auto& source = *std::get<std::unique_ptr<FfmpegSource>>(started);
    auto read = Reading(source, request).Read(0, progress);
    if (source.IsSilent() && std::holds_alternative<Refusal>(read)) return Refusal{.kind = Refusal::Kind::FfmpegSilent};
    return read;
}

/// What `source`, which is at the file's beginning, makes of it, or else ffmpeg. `isJoined` is asked behind its end.
Result ReadBy(auto& source, const Request& request, const core::Progress& progress, const auto& isJoined)
{
    if (progress.IsStopped()) return Refusal{.kind = Refusal::Kind::Stopped};
    if (!source.IsKnown()) return ReadByFfmpeg(request, progress);
    auto read = Reading(source, request).Read(request.part.from, progress);
    if (auto* const recording = std::get_if<Recording>(&read))
        recording->isJoined = ReachesEnd(*recording) && isJoined();
    return read;
}

Result ReadOgg(FileBytes& bytes, const Request& request, const core::Progress& progress)
{
    constexpr double kChecked = 0.3; // of the time
    const auto pages = CheckPages(bytes, progress.Stage(0, kChecked));
    bytes.EndAt(pages.end);
    SndfileSource source(bytes, !pages.isWhole);
    if (!source.IsKnown() && !pages.isWhole) return Refusal{.kind = Refusal::Kind::Damaged};
    return ReadBy(source, request, progress.Stage(kChecked, 1), [&] { return pages.isJoined; });
}

/// Whether another FLAC file begins somewhere behind the place up to which this one was read, roughly.
bool HasAnotherFlac(FileBytes& bytes)
{
    constexpr std::int64_t kPiece = 1 << 20; // bytes
    constexpr std::int64_t kAhead = 1 << 16; // that the decoder may have read too far
    using namespace std::string_view_literals;
    for (auto begin = std::max<std::int64_t>(bytes.Position() - kAhead, 1); begin < *bytes.Size(); begin += kPiece) {
        const auto piece = bytes.Piece(begin, kPiece + 8);
        if (piece.empty()) return false;
        for (const auto mark : {"fLaC\0\0\0\x22"sv, "fLaC\x80\0\0\x22"sv}) // and a block of 34 bytes, maybe the only
            if (piece.find(mark) != std::string::npos) return true;
    }
    return false;
}

Result ReadBytes(FileBytes& bytes, const Request& request, const core::Progress& progress)
{
    if (bytes.Size() == 0) return Refusal{.kind = Refusal::Kind::EmptyFile};
    if (IsOgg(bytes)) return ReadOgg(bytes, request, progress);
    if (IsMpeg(bytes)) {
        Mp3Source source(bytes);
        return ReadBy(source, request, progress, [&] { return source.IsJoined(); });
    }
    FillInDataSize(bytes);
    SndfileSource source(bytes);
    return ReadBy(source, request, progress, [&] { return source.IsFlac() && HasAnotherFlac(bytes); });
}

} // namespace

Result ReadSound(const fs::path& path, const Part& part, double mostSeconds, const core::Progress& progress)
{
    FileBytes bytes(path, progress);
    auto read = ReadBytes(bytes, {.path = path, .part = part, .mostSeconds = mostSeconds}, progress);
    bytes.RethrowFailure();
    if (progress.IsStopped()) return Refusal{.kind = Refusal::Kind::Stopped};
    return read;
}

} // namespace sound
