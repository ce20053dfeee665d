// machine_sound RECORDING.wav HEARD.wav: what the machine makes of a recording that the window takes, as the window and
// tonfloss-preview work it out: HEARD.wav at 10000 Hz. Tells for each period where it ends, in seconds: in the
// recording and on the machine.
#include "core/PeriodEncoder.h"
#include "core/WaveAcceptance.h"
#include "preview/SquareWave.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

int main(int argc, char** argv)
{
    if (argc != 3) return EXIT_FAILURE;
    std::ifstream in(argv[1], std::ios::binary);
    const std::string file((std::istreambuf_iterator<char>(in)), {});
    const auto* const rate = machine::RateOfHertz(core::ReadWaveFields(file).sampleRate);
    if (rate == nullptr || core::RefusalOf(core::ReadWaveFields(file))) return EXIT_FAILURE;

    core::BackgroundTask yield([] {});
    const auto runBytes = core::EncodePeriods(core::SampleBytes(file), yield).runBytes;
    const machine::Playback playback{.rate = *rate, .machine = {}};
    const auto performance = machine::PerformanceOf(runBytes, playback);
    std::ofstream out(argv[2], std::ios::binary);
    preview::WriteWave(performance, playback.machine.clock, 10000, [&](std::string_view bytes) {
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    });
    std::printf("%zu\n0 0\n", runBytes.size());
    double samples = 0;
    std::int64_t cycles = 0;
    for (const auto& period : machine::PeriodsOf(runBytes, playback)) {
        samples += static_cast<double>(period.samples);
        cycles += period.cycles;
        std::printf("%.6f %.6f\n", samples / rate->hertz, machine::SecondsOf(cycles, playback.machine));
    }
    return out.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
