// Answer.h: what tonfloss-prepare says of a sound, as UTF-8.
#pragma once

#include "prepare/Prepare.h"
#include "prepare/command/Options.h"

#include <filesystem>
#include <string>

namespace prepare {

/// Of a recording that was made of `input`: one "name: value" a line.
[[nodiscard]] std::string Answer(const std::filesystem::path& input, const std::filesystem::path& output,
                                 const Options& options, const sound::Recording& recording, const Prepared& prepared);

/// Why there is none, to be shown behind the file's name.
[[nodiscard]] std::string Reason(const sound::Refusal& refusal, const Options& options);
[[nodiscard]] std::string Reason(const Refusal& refusal, const Options& options);

} // namespace prepare
