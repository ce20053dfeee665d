// Answer.h: what tonfloss-prepare says of a sound, as UTF-8.
#pragma once

#include "core/SoundFileImage.h"
#include "prepare/Prepare.h"
#include "prepare/command/Options.h"

#include <filesystem>
#include <optional>
#include <string>

namespace prepare {

struct Way {
    std::filesystem::path input;
    std::filesystem::path output;
};

/// Of what was made: one "name: value" a line. `file` is the sound file; none where it is a recording.
[[nodiscard]] std::string Answer(const Way& way, const Options& options, const sound::Recording& recording,
                                 const Prepared& prepared, const std::optional<core::SoundFile>& file);

/// Why there is none, to be shown behind the file's name.
[[nodiscard]] std::string Reason(const sound::Refusal& refusal, const Options& options);
[[nodiscard]] std::string Reason(const Refusal& refusal, const Options& options);

} // namespace prepare
