#include "core/RecordingBytes.h"

#include "core/PeriodEncoder.h"
#include "core/WaveAcceptance.h"
#include "core/WaveHeader.h"

#include <cstdint>
#include <numeric>

namespace core {
namespace {

constexpr char kLow = 64;
constexpr char kHigh = '\xC0';
constexpr std::size_t kUnseen = 2; // samples at the end that the encoder never looks at

void AppendPeriod(std::string& bytes, std::size_t samples)
{
    const auto low = samples / 2 - 1;
    bytes.append(low, kLow).append(samples - low - 1, kHigh).append(1, kLow);
}

} // namespace

std::string RecordingBytes(std::span<const machine::RunByte> runBytes, const machine::SampleRate& rate)
{
    const auto samples = std::accumulate(runBytes.begin(), runBytes.end(), kUnseen);
    auto bytes = WaveHeader(static_cast<std::int64_t>(samples), rate.hertz, 1);
    bytes.reserve(bytes.size() + samples);
    std::size_t period = 0;
    for (std::size_t i = 0; i < runBytes.size(); ++i) {
        const auto byte = runBytes[i];
        // A 0 belongs to a single 254; those before it are a period by themselves.
        if (byte == 0 && period > machine::kStaysHigh) {
            AppendPeriod(bytes, period - machine::kStaysHigh);
            period = machine::kStaysHigh;
        }
        period += byte;
        if (byte == machine::kStaysHigh && i + 1 < runBytes.size()) continue;
        AppendPeriod(bytes, period);
        period = 0;
    }
    return bytes.append(kUnseen, kLow);
}

bool IsRecordingOfOurs(std::string_view file)
{
    const auto fields = ReadWaveFields(file);
    if (IsTooLarge(static_cast<double>(file.size())) || RefusalOf(fields)) return false;
    BackgroundTask yield([] {});
    const auto runBytes = EncodePeriods(SampleBytes(std::string(file)), yield).runBytes;
    return !runBytes.empty() && RecordingBytes(runBytes, *machine::RateOfHertz(fields.sampleRate)) == file;
}

} // namespace core
