// PreviewFiles.h: the sound file read bounded, and the Wave file written whole or not at all.
#pragma once

#include "preview/SoundFile.h"
#include "preview/SquareWave.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <variant>

namespace preview {

/// The sound file at `path`. Refuses, before anything blocks, all that isn't a regular file or is longer than any sound
/// file.
[[nodiscard]] std::variant<SoundFile, Refusal> ReadSoundFile(const std::filesystem::path& path);

/// Gives the bytes of a file to the sink that it gets; false where that gave up.
using Producer = std::function<bool(const ByteSink& sink)>;

/// Writes a file at `path`, first under the name ".NAME.tonfloss-part" beside it. A regular file that is there already
/// is replaced if `force` says so, but never `input`. After a refusal all is as before.
[[nodiscard]] std::optional<Refusal> WriteFile(const std::filesystem::path& path, const std::filesystem::path& input,
                                               bool force, const Producer& produce);

/// Writes to the standard output. Requires: SIGPIPE is ignored.
[[nodiscard]] std::optional<Refusal> WriteStandardOutput(const Producer& produce);

} // namespace preview
