// Prepare.h: one sound file made one recording.
#pragma once

#include "prepare/Options.h"

#include <filesystem>
#include <string>

namespace prepare {

/// Makes the recording of `input` that `options` ask for, and tells what it is, one "name: value" a line, as UTF-8.
/// Throws a Refusal, with nothing written.
[[nodiscard]] std::string Prepare(const std::filesystem::path& input, const Options& options, const Progress& progress);

} // namespace prepare
