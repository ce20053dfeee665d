// StreamSound.h: a sound file of any kind, or a part of one, piece by piece as it is decoded, at its own rate.
//     by libmpg123     MP3
//     by libsndfile    WAV, AIFF, AU, CAF, FLAC, Ogg Vorbis, Opus and more
//     by ffmpeg        what these can't read, where a program of that name is installed
// Nothing is kept in memory, and before the part as little as can be is read.
#pragma once

#include "core/Progress.h"
#include "sound/Refusal.h"
#include "sound/SoundSource.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <variant>

namespace sound {

// No microphone and no machine makes others. At the ends of what a file can say a second is an hour's work, or nothing.
inline constexpr std::int64_t kLowestRate = 1000;
inline constexpr std::int64_t kHighestRate = 1'000'000;

/// A part of a sound file, in seconds.
struct Part {
    double from = 0;
    std::optional<double> length; // none: up to the end
};

/// What was read.
struct Stretch {
    std::int64_t rate;
    std::int64_t channels;
    std::optional<double> seconds; // of the whole file, where it tells them
    double from;                   // seconds into it at which the part begins
    double length;                 // seconds
    bool isJoined = false;         // to another sound, which isn't read
    std::optional<double> told{};  // seconds of the whole file, where its sound ends before that, and pictures may not
};

/// Takes the next samples; `source` knows their rate, and the length.
using TakeBlock = std::function<void(const SoundSource& source, const SoundSource::Block& block)>;

/// Gives `part` of the file at `path` to `take`, also what comes before a damage. Refuses a part that is longer than
/// `mostSeconds`, before any work where the file tells its length. Throws a files::IOException for what is no file that
/// can be read.
[[nodiscard]] std::variant<Stretch, Refusal> StreamSound(const std::filesystem::path& path, const Part& part,
                                                         double mostSeconds, const TakeBlock& take,
                                                         const core::Progress& progress);

/// Where there is none in it.
[[nodiscard]] Refusal NoSoundIn(const Part& part);

} // namespace sound
