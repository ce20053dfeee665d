#include "prepare/RecordingBytes.h"

#include "core/WaveHeader.h"

#include <cstdint>
#include <numeric>

namespace prepare {
namespace {

constexpr char kLow = 64;
constexpr char kHigh = '\xC0';
constexpr std::size_t kUnseen = 2;   // samples at the end that the encoder never looks at
constexpr std::size_t kGoesOn = 254; // the byte that doesn't end its period

void AppendPeriod(std::string& bytes, std::size_t samples)
{
    const auto low = samples / 2 - 1;
    bytes.append(low, kLow).append(samples - low - 1, kHigh).append(1, kLow);
}

} // namespace

std::size_t RecordingSamples(std::string_view runBytes)
{
    return std::accumulate(runBytes.begin(), runBytes.end(), kUnseen,
                           [](std::size_t sum, char byte) { return sum + static_cast<std::uint8_t>(byte); });
}

std::string RecordingBytes(std::string_view runBytes, const machine::SampleRate& rate)
{
    const auto samples = RecordingSamples(runBytes);
    auto bytes = core::WaveHeader(static_cast<std::int64_t>(samples), rate.hertz, 1);
    bytes.reserve(bytes.size() + samples);
    std::size_t period = 0;
    for (std::size_t i = 0; i < runBytes.size(); ++i) {
        const std::size_t byte = static_cast<std::uint8_t>(runBytes[i]);
        if (byte == 0 && period > kGoesOn) { // a 0 belongs to a single 254; those before it are a period by themselves
            AppendPeriod(bytes, period - kGoesOn);
            period = kGoesOn;
        }
        period += byte;
        if (byte == kGoesOn && i + 1 < runBytes.size()) continue;
        AppendPeriod(bytes, period);
        period = 0;
    }
    return bytes.append(kUnseen, kLow);
}

} // namespace prepare
