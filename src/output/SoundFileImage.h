// SoundFileImage.h: from tokens to the bytes of the file.
#pragma once

#include "Yield.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace output {

/// Appends the bytes of tokens 0 to `lastToken` to `image`; each token past the end of `tokens` gives 0x00.
void AppendBytes(std::string& image, std::string_view tokens, std::int64_t lastToken,
                 conversion::Yield& RuntimeBackgroundTask);

} // namespace output
