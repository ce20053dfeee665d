// The times that the preview works with, held against a Z80 that runs the same file.
#include "Timing.h"
#include "KnownFile.h"
#include "Z80Machine.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using namespace preview;

TEST(Timing, IsThatOfTheMachineToTheCycle)
{
    // Short and long ones, the bounds of each kind, a long period that never falls, and all again behind each other.
    const auto runBytes = Bytes("02 05 80 fd fe 00 fe 01 fe fe 01 fe fe 02 00 01 fe fd 07 fe");
    for (const char rateByte : {'\x06', '\x08', '\x0B'})
        for (const long waits : {0, 1})
            for (const auto& header : {kFileHeader, std::string()}) {
                const auto player = PokEmulFile(rateByte, runBytes);
                const auto levels = Play(player, waits);
                const auto writes = PerformanceOf(std::get<SoundFile>(ParseSoundFile(header + player)), waits).writes;
                ASSERT_EQ(levels.size(), 40U);
                ASSERT_EQ(writes.size(), 40U);
                for (std::size_t i = 0; i < writes.size(); ++i) {
                    EXPECT_EQ(writes[i].time, levels[i].start - levels[0].start) << i << " at " << int{rateByte};
                    EXPECT_EQ(writes[i].high, levels[i].value == 0xC0) << i;
                }
            }
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
        for (const auto& period :
             PeriodsOf({.loadAddress = {}, .sampleRate = 8000, .title = "", .runBytes = Bytes(runBytes)}, 1))
            found.emplace_back(period.samples, period.cycles);
        EXPECT_EQ(found, expected) << runBytes;
    }
}

} // namespace
