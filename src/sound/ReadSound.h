// ReadSound.h: a sound file of any kind, or a part of one, made a Sound. Only what is asked for is kept in memory.
#pragma once

#include "core/Progress.h"
#include "sound/Refusal.h"
#include "sound/Sound.h"
#include "sound/StreamSound.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <variant>

namespace sound {

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

/// A Sound at another rate, in Hz, to be listened to.
[[nodiscard]] Samples AtRate(std::span<const float> sound, std::int64_t rate);

} // namespace sound
