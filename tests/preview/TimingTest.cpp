// The times that the preview works with, held against a Z80 that runs the same file.
#include "Timing.h"
#include "SoundFiles.h"
#include "Z80Machine.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using namespace preview;
using Write = std::pair<long, bool>; // its time since the first one, and whether it is high

class Timing : public testing::TestWithParam<char> {};

INSTANTIATE_TEST_SUITE_P(AtEachRate, Timing, testing::Values('\x06', '\x08', '\x0B'),
                         [](const auto& row) { return "RateByte" + std::to_string(row.param); });

TEST_P(Timing, IsThatOfTheMachineToTheCycle)
{
    // Short and long ones, the bounds of each kind, a long period that never falls, and all again behind each other.
    const auto runBytes = Bytes("02 05 80 fd fe 00 fe 01 fe fe 01 fe fe 02 00 01 fe fd fe");
    for (const long waits : {0, 1})
        for (const auto& file : {PC1600File(GetParam(), runBytes), PokEmulFile(GetParam(), runBytes)}) {
            std::vector<Write> onMachine;
            const auto heard = Play(file.substr(file.size() - 115 - runBytes.size() - 3), waits);
            for (const auto& level : heard.levels)
                onMachine.emplace_back(level.start - heard.levels.front().start, level.value == 0xC0);
            std::vector<Write> predicted;
            for (const auto& write : PerformanceOf(std::get<SoundFile>(ParseSoundFile(file)), waits).writes)
                predicted.emplace_back(write.time, write.high);
            EXPECT_EQ(predicted, onMachine) << file.size() << " bytes, " << waits << " waits";
            EXPECT_EQ(predicted.size(), 38U);
        }
}

TEST(Periods, GoFromRiseToRise)
{
    // At 8000 Hz with one wait a byte N takes 452 N + 114 cycles, and 254 takes eight more.
    struct Row {
        const char* runBytes;
        std::vector<std::pair<std::int64_t, std::int64_t>> periods; // samples in the recording, cycles
    };
    for (const auto& [runBytes, expected] : std::vector<Row>{
             {"", {}},
             {"02 fd", {{2, 1018}, {253, 114470}}},
             {"fe 01 08", {{255, 115496}, {8, 3730}}}, // the rest of a long one
             {"fe fe 01", {{509, 230426}}},            // 254 twice
             {"fe 00 08", {{254, 230756}, {8, 3730}}}, // 254 samples play like 510
             {"fe fe 08", {{516, 233590}}},            // 508 and 8 can't be told from 516: it never falls
             {"08 fe", {{8, 3730}, {254, 114930}}},    // the end mark ends it
             {"00", {{256, 115826}}},                  // no recording leads to it
         }) {
        std::vector<std::pair<std::int64_t, std::int64_t>> found;
        for (const auto& period :
             PeriodsOf({.loadAddress = {}, .sampleRate = 8000, .title = "", .runBytes = Bytes(runBytes)}, 1))
            found.emplace_back(period.samples, period.cycles);
        EXPECT_EQ(found, expected) << runBytes;
    }
}

} // namespace
