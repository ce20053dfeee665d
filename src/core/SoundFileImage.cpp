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
    if (!sound.loadAddress) return header;
    const auto length = kTokensPokeMul + static_cast<std::int64_t>(sound.runBytes.size()) + 1; // the end mark
    return WithAddress(WithProgramLength(header, WordTokensOf(length).value()),
                       WordTokensOf(*sound.loadAddress).value());
}

std::string Joined(std::string header, std::string_view runBytes)
{
    return header.append(runBytes).append(kAfterEndMark);
}

} // namespace

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
