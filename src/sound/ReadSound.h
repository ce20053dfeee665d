// ReadSound.h: a sound file of any kind, or a part of one, made a Sound.
//     by libmpg123     MP3
//     by libsndfile    WAV, AIFF, AU, CAF, FLAC, Ogg Vorbis, Opus and more
//     by ffmpeg        what these can't read, where a program of that name is installed
// Only what is asked for is kept in memory, and before that as little as can be is read.
#pragma once

#include "core/Progress.h"
#include "sound/Refusal.h"
#include "sound/Sound.h"

#include <cstdint>
#include <filesystem>
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

struct Recording {
    std::int64_t rate;
    std::int64_t channels;
    std::optional<double> seconds; // of the whole file, where it tells them
    double from;                   // seconds into it at which the part begins
    Samples samples;               // of the part
    bool isJoined = false;         // to another sound, which isn't read
    std::optional<double> told{};  // seconds of the whole file, where its sound ends before that, and pictures may not
};

/// Reads `part` of the file at `path`. Refuses a part that is longer than `mostSeconds`, before any work where the file
/// tells its length. Throws a files::IOException for what is no file that can be read.
[[nodiscard]] std::variant<Recording, Refusal> ReadSound(const std::filesystem::path& path, const Part& part,
                                                         double mostSeconds, const core::Progress& progress);

} // namespace sound
