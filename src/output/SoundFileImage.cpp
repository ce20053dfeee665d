#include "SoundFileImage.h"

#include "HexTokenText.h"

namespace output {

void AppendBytes(std::string& image, std::string_view tokens, std::int64_t lastToken,
                 conversion::Yield& RuntimeBackgroundTask)
{
    for (std::int64_t i = 0; i <= lastToken; ++i) {
        image += static_cast<char>(conversion::ByteOfToken(tokens, static_cast<std::size_t>(i)));
        RuntimeBackgroundTask();
    }
}

} // namespace output
