// ReadSound.h: a sound file of any kind, or a part of one, made a Sound.
//     by libsndfile    WAV, AIFF, AU, CAF, FLAC, Ogg Vorbis, Opus, MP3 and more
//     by ffmpeg        what libsndfile can't read, where a program of that name is installed
// Only what is asked for is kept in memory, and before that as little as can be is read.
#pragma once

#include "prepare/Sound.h"

#include <cstdint>
#include <filesystem>
#include <optional>

namespace prepare {

/// A part of a sound file, in seconds.
struct Part {
    double from = 0;
    std::optional<double> length; // none: up to the end
};

struct Recording {
    std::int64_t rate;
    std::int64_t channels;
    std::optional<double> seconds; // of the whole file, where it tells them
    Sound sound;                   // the part
};

/// Reads `part` of the file at `path`. Refuses a part that is longer than `mostSeconds`, before any work where the file
/// tells its length. Throws a Refusal.
[[nodiscard]] Recording ReadSound(const std::filesystem::path& path, const Part& part, double mostSeconds);

} // namespace prepare
