#include "core/SoundFileImage.h"

#include "core/HexTokenText.h"

namespace core {

std::string SoundFileImage(std::string_view header, std::string_view BinZeile,
                           core::BackgroundTask& RuntimeBackgroundTask)
{
    std::string image;
    const auto append = [&](std::string_view tokens, std::size_t tokenCount) {
        image.reserve(image.size() + tokenCount);
        for (std::size_t k = 0; k < tokenCount; ++k) {
            image += static_cast<char>(core::ByteOfToken(tokens, k));
            RuntimeBackgroundTask();
        }
    };
    append(header, core::TokenCount(header));
    append(BinZeile, core::TokenCount(BinZeile) + 2); // past its end a token reads as 00
    return image;
}

} // namespace core
