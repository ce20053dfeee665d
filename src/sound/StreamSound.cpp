#include "sound/StreamSound.h"

#include "sound/FfmpegSource.h"
#include "sound/FileBytes.h"
#include "sound/Mp3Source.h"
#include "sound/OggPages.h"
#include "sound/SndfileSource.h"
#include "sound/UnfinishedWave.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

namespace sound {
namespace {

namespace fs = std::filesystem;

using Result = std::variant<Stretch, Refusal>;

struct Request {
    const fs::path& path;
    const Part& part;
    double mostSeconds;
    const TakeBlock& take;
};

bool ReachesEnd(const Stretch& stretch)
{
    constexpr double kClose = 0.1; // seconds: where a length is guessed
    return !stretch.seconds || stretch.from + stretch.length > *stretch.seconds - kClose;
}

/// What is read of a source.
class Reading {
public:
    Reading(SoundSource& source, const Request& request)
        : source_(source),
          part_(request.part),
          mostSeconds_(request.mostSeconds),
          take_(request.take)
    {}

    /// Reads the part, which begins so many seconds behind where the source is.
    [[nodiscard]] Result Read(double behind, const core::Progress& progress) const
    {
        if (const auto refusal = RefusalAtOnce()) return *refusal;
        const auto begin = FramesIn(behind);
        source_.Skip(begin);
        const auto most = FramesToRead();
        const auto read = TakeFrames(most, progress);
        const bool isAtEnd = read < most;
        if (isAtEnd && (begin + read < source_.Least() || source_.IsBroken())) return Damage(read);
        if (read == 0) return NoSoundIn(part_);
        if (SecondsOf(read) > mostSeconds_) return Refusal{.kind = Refusal::Kind::EndlesslyLong, .most = mostSeconds_};
        Stretch stretch{.rate = source_.Rate(),
                        .channels = source_.Channels(),
                        .seconds = {},
                        .from = part_.from,
                        .length = SecondsOf(read)};
        if (const auto frames = source_.Frames()) stretch.seconds = SecondsOf(*frames);
        if (!isAtEnd) return stretch;
        stretch.seconds = part_.from + stretch.length; // its end was found
        constexpr double kEarlier = 0.5;               // seconds
        if (const auto told = source_.Told();
            *stretch.seconds < std::min(told.value_or(0), part_.from + LengthAskedFor()) - kEarlier)
            stretch.told = told;
        return stretch;
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

    [[nodiscard]] std::int64_t TakeFrames(std::int64_t most, const core::Progress& progress) const
    {
        std::int64_t read = 0;
        for (SoundSource::Block block; read < most && !(block = source_.Read(most - read)).mixed.empty();) {
            take_(source_, block);
            read += std::ssize(block.mixed);
            if (!progress.GoesOn(SecondsOf(read) / SecondsOf(most))) break;
        }
        return read;
    }

    SoundSource& source_;
    const Part& part_;
    double mostSeconds_;
    const TakeBlock& take_;
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
    if (auto* const stretch = std::get_if<Stretch>(&read)) stretch->isJoined = ReachesEnd(*stretch) && isJoined();
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

Refusal NoSoundIn(const Part& part)
{
    return {.kind = part.from > 0 ? Refusal::Kind::NoSoundInPart : Refusal::Kind::NoSound};
}

Result StreamSound(const fs::path& path, const Part& part, double mostSeconds, const TakeBlock& take,
                   const core::Progress& progress)
{
    FileBytes bytes(path, progress);
    auto read = ReadBytes(bytes, {.path = path, .part = part, .mostSeconds = mostSeconds, .take = take}, progress);
    bytes.RethrowFailure();
    if (progress.IsStopped()) return Refusal{.kind = Refusal::Kind::Stopped};
    return read;
}

} // namespace sound
