// machine_sound RECORDING.wav HEARD.wav: what the machine makes of a recording that the window takes, as the window and
// tonfloss-preview work it out: HEARD.wav at 10000 Hz. Tells for each period where it ends, in seconds: in the
// recording and on the machine.
#include "core/PeriodEncoder.h"
#include "core/WaveAcceptance.h"
#include "preview/SquareWave.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace {

/// The run bytes of `file` without the end mark.
std::string RunBytesOf(const std::string& file)
{
    core::BackgroundTask yield([] {});
    const auto tokens = core::EncodePeriods(core::SampleBytes(file), nullptr, yield);
    std::string bytes;
    for (std::size_t i = 2; i + 4 < tokens.size(); i += 4) {
        int byte = 0;
        std::from_chars(&tokens[i], &tokens[i] + 2, byte, 16);
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) return EXIT_FAILURE;
    std::ifstream in(argv[1], std::ios::binary);
    const std::string file((std::istreambuf_iterator<char>(in)), {});
    const auto* const rate = machine::RateOfHertz(core::ReadWaveFields(file).sampleRate);
    if (rate == nullptr || core::RefusalOf(core::ReadWaveFields(file))) return EXIT_FAILURE;

    const auto runBytes = RunBytesOf(file);
    const machine::Machine machine;
    const auto performance = machine::PerformanceOf(runBytes, *rate, machine.waits);
    std::ofstream out(argv[2], std::ios::binary);
    preview::WriteWave(performance, machine.clock, 10000, [&](std::string_view bytes) {
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
    std::printf("%zu\n0 0\n", runBytes.size());
    double samples = 0;
    double cycles = 0;
    for (const auto& period : machine::PeriodsOf(runBytes, *rate, machine.waits)) {
        samples += static_cast<double>(period.samples);
        cycles += static_cast<double>(period.cycles);
        std::printf("%.6f %.6f\n", samples / rate->hertz, cycles / static_cast<double>(machine.clock));
    }
    return out.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
