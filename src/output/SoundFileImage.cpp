#include "SoundFileImage.h"

#include "HexTokenText.h"

namespace output {

void AppendBytes(std::string& image, std::string_view tokens, std::int64_t lastToken,
                 conversion::Yield& RuntimeBackgroundTask)
{
    const auto tokenCount = static_cast<std::size_t>(lastToken + 1);
    const auto start = image.size();
    image.resize(start + tokenCount);
    for (std::size_t k = 0; k < tokenCount; ++k) {
        image[start + k] = static_cast<char>(conversion::ByteOfToken(tokens, k));
        RuntimeBackgroundTask();
    }
}

} // namespace output
