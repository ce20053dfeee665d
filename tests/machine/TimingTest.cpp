// The times that the machine takes, held against a Z80 that runs the same file.
#include "machine/Timing.h"
#include "core/WaveAcceptance.h"
#include "preview/SoundFile.h"
#include "support/KnownFile.h"
#include "support/RunBytesOf.h"
#include "support/WaveBytes.h"
#include "support/Z80Machine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <utility>
#include <vector>

namespace {

using namespace machine;

TEST(SampleRates, GoAllTheWayFromTheRecordingToThePort)
{
    // Short and long ones, the bounds of each kind, a long period that never falls, and all again behind each other.
    const auto runBytes = RunBytesOf("02 05 80 fd fe 00 fe 01 fe fe 01 fe fe 02 00 01 fe fd 07 fe");
    for (const auto& rate : kSampleRates)
        for (const long waits : {0, 1})
            for (const auto address : {std::optional<std::int64_t>(), std::optional<std::int64_t>(0x80C5)}) {
                SCOPED_TRACE(rate.hertz);
                EXPECT_EQ(core::RefusalOf(core::ReadWaveFields(std::string(WaveBytes().rate(rate.hertz)))),
                          std::nullopt);
                const auto file = core::SoundFileImage({address, rate, U"tone.wav", runBytes});
                const auto parsed = preview::ParseSoundFile(file);
                ASSERT_TRUE(std::holds_alternative<preview::SoundFile>(parsed));
                const auto& sound = std::get<preview::SoundFile>(parsed);
                EXPECT_EQ(sound.sampleRate.hertz, rate.hertz);

                const auto levels = Play(file.substr(address ? 16 : 0), waits);
                const auto writes = PerformanceOf(sound.runBytes, {sound.sampleRate, {.waits = waits}}).writes;
                ASSERT_EQ(levels.size(), 40U);
                ASSERT_EQ(writes.size(), 40U);
                for (std::size_t i = 0; i < writes.size(); ++i) {
                    EXPECT_EQ(writes[i].time, levels[i].start - levels[0].start) << i;
                    EXPECT_EQ(writes[i].high, levels[i].value == 0xC0) << i;
                }
                // A delay step is half a sample of the recording, or pitch and tempo would be others.
                EXPECT_NEAR(2.0 * static_cast<double>(rate.stepCycles) * rate.hertz / 3'580'000, 1, 0.08);
            }
}

// The document's table is written by hand. Where it is another one, the one that is shown belongs there.
TEST(Pitch, IsWhatTheFileFormatTells)
{
    const auto periodOf = [](long samples, const SampleRate& rate) {
        return PeriodsOf(RunBytes{static_cast<RunByte>(samples)}, {rate, {}}).at(0);
    };
    std::ostringstream table;
    std::string rule = "\n|---|";
    table << std::fixed << "| N |";
    for (const auto& rate : kSampleRates) {
        const auto step = periodOf(3, rate).cycles - periodOf(2, rate).cycles;
        table << ' ' << rate.hertz << " Hz: " << step << " N + " << periodOf(2, rate).cycles - 2 * step << " |";
        rule += "---|";
    }
    table << rule;
    for (const long samples : {2, 5, 10, 20, 50, 100, 250}) {
        table << "\n| " << samples << " |";
        for (const auto& rate : kSampleRates) {
            const auto pitch = PitchOf(periodOf(samples, rate), {rate, {}});
            table << std::setprecision(1) << ' ' << (1 - pitch) * 100 << " %, " << std::setprecision(0)
                  << -1200 * std::log2(pitch) << " cents |";
        }
    }
    EXPECT_NE(Read(FILE_FORMAT).find(table.str() + "\n\n"), std::string::npos) << table.str();
}

TEST(Periods, GoFromRiseToRise)
{
    // At 8000 Hz with one wait a byte N takes 452 N + 114 cycles, and 254 takes eight more.
    using Periods = std::vector<std::pair<long, long>>; // samples in the recording, cycles
    for (const auto& [runBytes, expected] : std::vector<std::pair<const char*, Periods>>{
             {"fe 01 08", {{255, 115496}, {8, 3730}}}, // the rest of a long one
             {"fe 00 08", {{254, 230756}, {8, 3730}}}, // 254 samples play like 510
             {"fe fe 08", {{516, 233590}}},            // 508 and 8 can't be told from 516: it never falls
             {"08 fe", {{8, 3730}, {254, 114930}}},    // the end mark ends it
             {"00", {{256, 115826}}},                  // no recording leads to it
         }) {
        Periods found;
        for (const auto& period : PeriodsOf(RunBytesOf(runBytes), {*RateOfHertz(8000), {}}))
            found.emplace_back(period.samples, period.cycles);
        EXPECT_EQ(found, expected) << runBytes;
    }
}

} // namespace
