#include "core/SoundFileImage.h"

#include "core/HexTokenText.h"
#include "core/SoundFileHeader.h"
#include "core/WaveAcceptance.h"

namespace core {
namespace {

std::string BytesOf(std::string_view tokens, BackgroundTask& RuntimeBackgroundTask)
{
    std::string bytes;
    bytes.reserve(TokenCount(tokens));
    for (std::size_t k = 0; k < TokenCount(tokens); ++k) {
        bytes += static_cast<char>(ByteOfToken(tokens, k));
        RuntimeBackgroundTask();
    }
    return bytes;
}

std::string HeaderOf(const SoundFile& sound, BackgroundTask& RuntimeBackgroundTask)
{
    const auto& layout = sound.loadAddress ? kLayoutPC1600 : kLayoutPokeMul;
    auto header = WithRateAndTitle(layout.tokens, layout, RateToken(sound.sampleRate.hertz),
                                   NameTokens(sound.title, RuntimeBackgroundTask));
    header = WithPlayerAt(header, layout, sound.playerAddress);
    if (!sound.loadAddress) return header;
    return WithAddress(WithProgramLength(header, WordTokensOf(SizeOf(sound) - kFileHeaderTokens).value()),
                       WordTokensOf(*sound.loadAddress).value());
}

std::string Joined(std::string header, std::string_view runBytes)
{
    return header.append(runBytes).append(kAfterEndMark);
}

} // namespace

std::int64_t SizeOf(const SoundFile& sound)
{
    const auto runBytes = static_cast<std::int64_t>(sound.runBytes.size()) + 1; // the end mark
    return sound.loadAddress ? kTokensPC1600 + runBytes : runBytes;
}

std::variant<std::string, AddressRefusal, TitleRefusal> LaidOutFile(SoundFile sound)
{
    sound.playerAddress = sound.loadAddress.value_or(machine::kPlayerAddress);
    if (const auto refusal = RefusalOf(sound.playerAddress, SizeOf(sound))) return *refusal;
    if (const auto refusal = RefusalOfTitle(sound.title)) return *refusal;
    return SoundFileImage(sound);
}

std::string SoundFileImage(const SoundFile& sound)
{
    BackgroundTask nothingElse([] {});
    std::string runBytes(sound.runBytes.begin(), sound.runBytes.end());
    runBytes += static_cast<char>(machine::kEndMark);
    return Joined(BytesOf(HeaderOf(sound, nothingElse), nothingElse), runBytes);
}

std::string SoundFileImage(std::string_view header, std::string_view BinZeile, BackgroundTask& RuntimeBackgroundTask)
{
    return Joined(BytesOf(header, RuntimeBackgroundTask), BytesOf(BinZeile, RuntimeBackgroundTask));
}

} // namespace core
