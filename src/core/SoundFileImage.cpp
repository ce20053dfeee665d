#include "core/SoundFileImage.h"

#include "core/HexTokenText.h"
#include "core/SoundFileHeader.h"
#include "core/WaveAcceptance.h"

#include <cassert>

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

/// The header of `sound`, whose run bytes are `T` with the end mark.
std::string HeaderOf(const SoundFile& sound, std::int64_t T, BackgroundTask& RuntimeBackgroundTask)
{
    const auto& layout = sound.loadAddress ? kLayoutPC1600 : kLayoutPokeMul;
    const auto header = WithRateAndTitle(layout.tokens, layout, RateToken(sound.sampleRate.hertz),
                                         NameTokens(sound.title, RuntimeBackgroundTask));
    if (!sound.loadAddress) return header;
    const auto length = WordTokensOf(T + kTokensPokeMul);
    const auto address = WordTokensOf(*sound.loadAddress);
    assert(length && address);
    return WithAddress(WithProgramLength(header, *length), *address);
}

std::string Joined(const std::string& header, std::string_view runBytes)
{
    return std::string(header).append(runBytes).append(kAfterEndMark);
}

} // namespace

std::string SoundFileImage(const SoundFile& sound)
{
    BackgroundTask nothingElse([] {});
    std::string runBytes(sound.runBytes.begin(), sound.runBytes.end());
    runBytes += static_cast<char>(machine::kEndMark);
    const auto header = HeaderOf(sound, static_cast<std::int64_t>(runBytes.size()), nothingElse);
    return Joined(BytesOf(header, nothingElse), runBytes);
}

std::string SoundFileImage(std::string_view header, std::string_view BinZeile, BackgroundTask& RuntimeBackgroundTask)
{
    return Joined(BytesOf(header, RuntimeBackgroundTask), BytesOf(BinZeile, RuntimeBackgroundTask));
}

} // namespace core
