#include "SoundFileImage.h"

#include "HexTokenText.h"

namespace output {

std::string SoundFileImage(std::string_view header, std::string_view BinZeile, conversion::Yield& RuntimeBackgroundTask)
{
    std::string image;
    const auto append = [&](std::string_view tokens, std::size_t tokenCount) {
        image.reserve(image.size() + tokenCount);
        for (std::size_t k = 0; k < tokenCount; ++k) {
            image += static_cast<char>(conversion::ByteOfToken(tokens, k));
            RuntimeBackgroundTask();
        }
    };
    append(header, conversion::TokenCount(header));
    append(BinZeile, conversion::TokenCount(BinZeile) + 2); // past its end a token reads as 00
    return image;
}

} // namespace output
