#include "sound/OggPages.h"

#include <array>
#include <map>
#include <numeric>
#include <optional>
#include <string>

namespace sound {
namespace {

// A page: "OggS", version, flags, position of the sound (8 bytes), number of the stream, of the page, checksum (4
// each), count of segments, their lengths, the segments. Numbers begin with the lowest byte.
constexpr std::int64_t kHeader = 27; // bytes, without the lengths
constexpr std::size_t kFlags = 5;
constexpr std::size_t kStream = 14;
constexpr std::size_t kNumber = 18;
constexpr std::size_t kChecksum = 22;
constexpr std::size_t kSegments = 26;
constexpr unsigned kFirst = 2;
constexpr unsigned kLast = 4;

std::uint8_t ByteAt(const std::string& bytes, std::size_t at)
{
    return static_cast<std::uint8_t>(bytes[at]);
}

std::uint32_t NumberAt(const std::string& bytes, std::size_t at)
{
    std::uint32_t number = 0;
    for (std::size_t k = 4; k-- > 0;)
        number = number << 8 | ByteAt(bytes, at + k);
    return number;
}

constexpr auto kSteps = [] {
    std::array<std::uint32_t, 256> steps{};
    for (std::uint32_t k = 0; k < steps.size(); ++k) {
        steps[k] = k << 24;
        for (int bit = 0; bit < 8; ++bit)
            steps[k] = steps[k] << 1 ^ (steps[k] >> 31) * 0x04C11DB7;
    }
    return steps;
}();

/// The page's own field counts as zeros.
std::uint32_t ChecksumOf(std::string page)
{
    page.replace(kChecksum, 4, 4, '\0');
    return std::accumulate(page.begin(), page.end(), std::uint32_t{0}, [](std::uint32_t sum, char byte) {
        return sum << 8 ^ kSteps[sum >> 24 ^ static_cast<std::uint8_t>(byte)];
    });
}

/// The page that begins there, if it is as it was written.
std::optional<std::string> PageAt(FileBytes& bytes, std::int64_t begin)
{
    const auto header = bytes.Piece(begin, kHeader);
    if (std::ssize(header) < kHeader || !header.starts_with("OggS")) return std::nullopt;
    const auto lengths = bytes.Piece(begin + kHeader, ByteAt(header, kSegments));
    const auto length =
        std::accumulate(lengths.begin(), lengths.end(), kHeader + std::ssize(lengths),
                        [](std::int64_t sum, char byte) { return sum + static_cast<std::uint8_t>(byte); });
    auto page = bytes.Piece(begin, length);
    if (std::ssize(page) < length || ChecksumOf(page) != NumberAt(page, kChecksum)) return std::nullopt;
    return page;
}

} // namespace

bool IsOgg(FileBytes& bytes)
{
    return bytes.Piece(0, 4) == "OggS";
}

OggPages CheckPages(FileBytes& bytes, const core::Progress& progress)
{
    OggPages found;
    std::map<std::uint32_t, std::uint32_t> next; // page of each stream
    bool hasBegun = false;                       // all first pages come before all others
    const auto size = static_cast<double>(*bytes.Size());
    while (progress.GoesOn(static_cast<double>(found.end) / size)) {
        const auto page = PageAt(bytes, found.end);
        if (!page) break;
        const auto flags = ByteAt(*page, kFlags);
        const bool isFirst = (flags & kFirst) != 0;
        if (isFirst && hasBegun) {
            found.isJoined = true;
            break;
        }
        hasBegun = hasBegun || !isFirst;
        auto& number = next[NumberAt(*page, kStream)];
        if (NumberAt(*page, kNumber) != number++) break;
        found.isWhole = (flags & kLast) != 0;
        found.end += std::ssize(*page);
    }
    return found;
}

} // namespace sound
