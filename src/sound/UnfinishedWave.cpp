#include "sound/UnfinishedWave.h"

#include <algorithm>
#include <string>

namespace sound {
namespace {

constexpr std::int64_t kRiffHeader = 12; // bytes: "RIFF", size of what follows, "WAVE"
constexpr std::int64_t kChunkHeader = 8; // bytes: name, size; what is in it follows, filled up to an even count

/// The size in a chunk's header, which begins with the lowest byte.
std::int64_t SizeIn(const std::string& header)
{
    std::int64_t size = 0;
    for (std::size_t k = kChunkHeader; k-- > 4;)
        size = size << 8 | static_cast<unsigned char>(header[k]);
    return size;
}

} // namespace

void FillInDataSize(FileBytes& bytes)
{
    constexpr int kMostChunks = 100; // before the data; somebody may have written more to hold us up
    const auto riff = bytes.Piece(0, kRiffHeader);
    const auto end = *bytes.Size();
    // A size that is right was filled in when all else was.
    if (!riff.starts_with("RIFF") || riff.substr(8) != "WAVE" || SizeIn(riff) == end - kChunkHeader) return;
    auto begin = kRiffHeader;
    for (int chunk = 0; chunk < kMostChunks; ++chunk) {
        const auto header = bytes.Piece(begin, kChunkHeader);
        if (std::ssize(header) < kChunkHeader) return;
        const auto size = SizeIn(header);
        begin += kChunkHeader;
        if (header.starts_with("data")) {
            if (size > 0) return;
            std::string filledIn;
            for (auto rest = std::min<std::int64_t>(end - begin, 0x7FFFFFFF); filledIn.size() < 4; rest >>= 8)
                filledIn += static_cast<char>(rest & 0xFF);
            return bytes.Overwrite(begin - 4, filledIn);
        }
        begin += size + size % 2;
    }
}

} // namespace sound
