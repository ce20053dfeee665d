// SoundFileImage.h: from tokens to the bytes of the file.
#pragma once

#include "core/BackgroundTask.h"

#include <string>
#include <string_view>

namespace core {

/// The whole file: the bytes of `header`, those of the run bytes, and the two bytes 00 that follow the end mark.
[[nodiscard]] std::string SoundFileImage(std::string_view header, std::string_view BinZeile,
                                         core::BackgroundTask& RuntimeBackgroundTask);

} // namespace core
