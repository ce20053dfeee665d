#include "preview/SoundFile.h"

#include "core/HexTokenText.h"
#include "core/LoadAddress.h"
#include "core/WaveAcceptance.h"

#include <algorithm>
#include <array>

namespace preview {
namespace {

using namespace core;

// A token is a byte of the file.
constexpr std::size_t kFileHeader = kFileHeaderTokens;
constexpr std::size_t kPlayer = kTokensPokeMul;

std::uint32_t ByteAt(std::string_view bytes, std::size_t offset)
{
    return static_cast<std::uint8_t>(bytes[offset]);
}

std::uint32_t WordAt(std::string_view bytes, std::size_t offset)
{
    return ByteAt(bytes, offset) | ByteAt(bytes, offset + 1) << 8;
}

/// Whether the program patches this token of the PC-1600 header.
bool IsField(std::size_t token)
{
    for (const auto word : {kProgramLengthToken, kLoadAddressToken, kStartAddressToken})
        if (token == word || token == word + 1) return true;
    return token == kRateToken || (token >= kTitleToken && token < kTitleToken + kTitleTokens);
}

/// What is wrong with the constants in front of the run bytes, when the player is laid out for that address. `absent`
/// bytes of the PC-1600 header aren't there.
std::optional<Refusal> RefusalOfConstants(std::string_view bytes, std::size_t absent, std::int64_t playerAddress)
{
    const auto header = WithPlayerAt(kLayoutPC1600.tokens, kLayoutPC1600, playerAddress);
    for (auto token = absent; token < kTokensPC1600; ++token) {
        if (IsField(token) || ByteAt(bytes, token - absent) == ByteOfToken(header, token)) continue;
        const std::string whose = token < kFileHeader ? "the file header's" : "the player's";
        return Refusal{whose + " bytes differ at " + std::to_string(token - absent)};
    }
    return std::nullopt;
}

/// What is wrong with the fields of the file header, when `runBytes` with the end mark follow the player.
std::optional<Refusal> RefusalOfFields(std::string_view bytes, std::size_t runBytes)
{
    const auto length = WordAt(bytes, kProgramLengthToken);
    if (length != kPlayer + runBytes)
        return Refusal{"the file header tells a program of " + std::to_string(length) + " bytes, but it has " +
                       std::to_string(kPlayer + runBytes)};
    const auto address = WordAt(bytes, kLoadAddressToken);
    const auto size = kTokensPC1600 + static_cast<std::int64_t>(runBytes);
    if (const auto refusal = RefusalOf(address, size))
        return Refusal{"the load address " + AddressText(address) + ReasonOf(*refusal, size)};
    const auto start = WordAt(bytes, kStartAddressToken);
    if (start != address)
        return Refusal{"the start address " + AddressText(start) + " isn't the load address " + AddressText(address)};
    return std::nullopt;
}

std::u32string WithoutFill(std::string_view field)
{
    std::u32string title;
    for (const char character : field.substr(0, field.find_last_not_of('\0') + 1))
        title += static_cast<std::uint8_t>(character);
    return title;
}

/// Whether `bytes` begin as sounds of the common kinds do: Wave, AIFF, AU, CAF, FLAC, Ogg, MP3, MP4 and Matroska.
bool IsSound(std::string_view bytes)
{
    using Mark = std::pair<std::size_t, std::string_view>; // where it stands, what stands there
    return std::ranges::any_of(
        std::array<Mark, 11>{Mark{8, "WAVE"},
                             {0, "FORM"},
                             {0, ".snd"},
                             {0, "caff"},
                             {0, "fLaC"},
                             {0, "OggS"},
                             {0, "ID3"},
                             {0, "\xFF\xFB"},
                             {0, "\xFF\xF3"},
                             {4, "ftyp"},
                             {0, "\x1A\x45\xDF\xA3"}},
        [&](const auto& mark) { return bytes.substr(std::min(bytes.size(), mark.first)).starts_with(mark.second); });
}

std::variant<SoundFile, Refusal> Parse(std::string_view bytes)
{
    if (IsSound(bytes) && !RefusalOf(ReadWaveFields(bytes)))
        return Refusal{"it is a recording; drop it on the window of tonfloss, and name the file that you save there"};
    if (IsSound(bytes)) return Refusal{"it is a sound for tonfloss-prepare, which makes a recording of it"};
    if (bytes.size() > kLargestFile) return Refusal{"more than " + std::to_string(kLargestFile) + " bytes"};
    if (bytes.empty()) return Refusal{"it is empty"};
    const auto begins = [&](const auto& target) { return ByteAt(bytes, 0) == ByteOfToken(target.tokens, 0); };
    if (!begins(kLayoutPC1600) && !begins(kLayoutPokeMul))
        return Refusal{"it begins neither with a file header nor with the player"};
    const auto& layout = begins(kLayoutPC1600) ? kLayoutPC1600 : kLayoutPokeMul;
    const auto absent = layout.absent;
    const auto front = TokenCount(layout.tokens);
    if (bytes.size() < front + 1 + kAfterEndMark.size())
        return Refusal{"only " + std::to_string(bytes.size()) + " bytes, less than a player and an end mark"};
    // Without a file header only the window's player is one of ours: nothing tells of another address.
    const auto laidOutFor = layout.HasFileHeader() ? PlayerAddressOf(bytes.substr(kFileHeader, kPlayer)) : std::nullopt;
    const auto playerAddress = laidOutFor.value_or(machine::kPlayerAddress);
    if (const auto refusal = RefusalOfConstants(bytes, absent, playerAddress)) return *refusal;

    const auto rateByte = ByteAt(bytes, kRateToken - absent);
    const auto* const rate = machine::RateOfPlayerByte(rateByte);
    if (rate == nullptr)
        return Refusal{"the rate byte is " + std::to_string(rateByte) + ", which the player doesn't know"};
    const auto endMark = bytes.find(static_cast<char>(machine::kEndMark), front);
    if (endMark == std::string_view::npos) return Refusal{"the end mark is missing"};
    if (bytes.substr(endMark + 1) != kAfterEndMark)
        return Refusal{"the end mark at " + std::to_string(endMark) + " isn't followed by two zeros and the end"};
    if (layout.HasFileHeader())
        if (const auto refusal = RefusalOfFields(bytes, endMark + 1 - front)) return *refusal;

    SoundFile sound{.loadAddress = std::nullopt,
                    .sampleRate = *rate,
                    .title = WithoutFill(bytes.substr(kTitleToken - absent, kTitleTokens)),
                    .runBytes = {bytes.begin() + static_cast<std::ptrdiff_t>(front),
                                 bytes.begin() + static_cast<std::ptrdiff_t>(endMark)},
                    .playerAddress = playerAddress};
    if (layout.HasFileHeader()) sound.loadAddress = WordAt(bytes, kLoadAddressToken);
    return sound;
}

} // namespace

std::variant<SoundFile, Refusal> ParseSoundFile(std::string_view bytes)
{
    auto parsed = Parse(bytes);
    if (auto* const refusal = std::get_if<Refusal>(&parsed)) refusal->reason.insert(0, "no sound file: ");
    return parsed;
}

} // namespace preview
