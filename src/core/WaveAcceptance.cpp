#include "core/WaveAcceptance.h"

#include "core/HexTokenText.h"
#include "core/SoundFileHeader.h"
#include "core/TextLibrary.h"
#include "core/Title.h"
#include "machine/SampleRates.h"

#include <cassert>

namespace core {
namespace {

constexpr std::size_t kWaveHeader = 44; // bytes

/// The little-endian number in bytes `first` to `last`, positions counted from 1.
std::uint32_t NumberAt(std::string_view file, std::size_t first, std::size_t last)
{
    std::uint32_t number = 0;
    for (auto position = last; position >= first; --position)
        number = number << 8 | text::Asc(text::Mid(file, position, 1));
    return number;
}

} // namespace

bool IsTooLarge(double fileBytes)
{
    return fileBytes > kLargestWaveFile;
}

WaveFields ReadWaveFields(std::string_view file)
{
    return {.formatTag = NumberAt(file, 21, 22),
            .channels = NumberAt(file, 23, 24),
            .sampleRate = NumberAt(file, 25, 28),
            .bitsPerSample = NumberAt(file, 35, 36)};
}

std::optional<WaveRefusal> RefusalOf(const WaveFields& fields)
{
    if (fields.formatTag != 1) return WaveRefusal::FormatTag;
    if (fields.channels != 1) return WaveRefusal::Channels;
    if (machine::RateOfHertz(fields.sampleRate) == nullptr) return WaveRefusal::SampleRate;
    if (fields.bitsPerSample != 8) return WaveRefusal::BitsPerSample;
    return std::nullopt;
}

std::string RateToken(std::uint32_t sampleRate)
{
    const auto* const rate = machine::RateOfHertz(sampleRate);
    assert(rate != nullptr);
    return std::string(TokenOf(rate->playerByte));
}

std::string NameTokens(std::u32string_view fileName, BackgroundTask& RuntimeBackgroundTask)
{
    const auto title = TitleOf(fileName);
    std::string tokens;
    for (std::size_t position = 1; position <= kTitleTokens; ++position) {
        tokens += TokenOf(static_cast<std::uint8_t>(text::Asc(text::Mid(title, position, 1))));
        RuntimeBackgroundTask();
    }
    return tokens;
}

std::string SampleBytes(std::string file)
{
    file.erase(0, kWaveHeader);
    return file;
}

std::string FileTitle(std::string_view utf8Name, double fileBytes, std::uint32_t sampleRate)
{
    return std::string(utf8Name) + " / " + text::Str(fileBytes) + " Bytes / " + text::Str(sampleRate / 1000.0) + " kHz";
}

} // namespace core
