// The saved files, played by a Z80: what leaves the port is the recording.
#include "Falls.h"
#include "WindowTest.h"
#include "Z80Machine.h"

#include <cmath>
#include <numbers>
#include <random>

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Field;

// One delay step of the player in T-states, by the published instruction times:
//     CALL 17, PUSH 11 + 11, LD HL,nn 10, LD A,(HL) 7, LD B,n 7, CP 7, then
//         6000 Hz    JR taken 12
//         8000 Hz    JR not taken 7, LD B,n 7, CP 7, JR taken 12
//         11025 Hz   JR not taken 7, LD B,n 7, CP 7, JR not taken 7, LD B,n 7
//     DJNZ to itself, p passes: 13 (p - 1) + 8 with p = 12, 5, 1
//     POP 10 + 10, RET 10, and the DJNZ of the caller 13
// which is 276, 206 and 156. A byte N lasts N steps in each half, less 5 for the last DJNZ, and on top of that
//     high, N       LD A,(HL) 7, LD B,A 4, CP 7, JR taken 12, LD A,n 7, OUT 11            N steps + 43
//     high, 254     7, 4, 7, JR not taken 7, LD A,n 7, JR 12, OUT 11                    254 steps + 50
//     low           INC HL 6, JP 10, LD A,(HL) 7, CP 7, JP 10, LD B,A 4, LD A,n 7, OUT 11    N steps + 57
struct Rate {
    std::uint32_t hertz;
    long step;
};

class Player : public WindowTest, public testing::WithParamInterface<Rate> {
protected:
    /// The performance of the file that the program makes of `samples`.
    Performance PlayRecording(const std::string& samples, bool pokEmul = false)
    {
        if (pokEmul)
            window.OptionAudioPokEmul_Action();
        else
            window.OptionAudioSharp_Action();
        dialogs.answer = folder / "SOUND";
        Drop("tone.wav", WaveBytes().rate(GetParam().hertz).samples(samples));
        Enter(U"80C5");
        return Play(Read(folder / "SOUND").substr(pokEmul ? 0 : 16));
    }
};

INSTANTIATE_TEST_SUITE_P(AtEachRate, Player, testing::Values(Rate{6000, 276}, Rate{8000, 206}, Rate{11025, 156}),
                         [](const auto& row) { return "Hz" + std::to_string(row.param.hertz); });

TEST_P(Player, HoldsEachLevelForItsTime)
{
    std::string samples;
    for (const std::size_t period : {2U, 128U, 253U, 254U, 255U, 509U, 508U, 2U})
        samples += std::string(period - 1, '\xC8') + '\x32'; // bytes 2, 128, 253, 254 0, 254 1, 254 254 1, 254 254, 2
    const auto heard = PlayRecording(samples + "\x32\x32");

    const long step = GetParam().step;
    std::vector<std::pair<int, long>> expected;
    for (const long byte : {2, 128, 253, 254, 256, 254, 1, 254, 254, 1, 254, 254, 2}) { // the byte 0 counts as 256
        expected.emplace_back(0xC0, byte * step + (byte == 254 ? 50 : 43));
        expected.emplace_back(byte == 254 ? 0xC0 : 0x40, byte * step + 57);
    }
    expected.pop_back(); // nothing is written behind the last low level, so it has no end here
    std::vector<std::pair<int, long>> lengths;
    for (std::size_t i = 0; i + 1 < heard.levels.size(); ++i)
        lengths.emplace_back(heard.levels[i].value, heard.levels[i + 1].start - heard.levels[i].start);
    EXPECT_EQ(lengths, expected);
    EXPECT_EQ(heard.levels.back().value, 0x40);
    EXPECT_THAT(heard.levels, Each(Field(&Level::interrupts, false)));
    EXPECT_TRUE(heard.interruptsAfterwards);
    EXPECT_FALSE(heard.otherPorts);
    EXPECT_THAT(heard.calls, ElementsAre("0112", "0109", "00EB 13 tone.wav" + std::string(17, '\0') + "\x0D"));

    const auto inEmulator = PlayRecording(samples + "\x32\x32", true);
    EXPECT_TRUE(std::equal(heard.levels.begin(), heard.levels.end(), inEmulator.levels.begin(), inEmulator.levels.end(),
                           [](auto a, auto b) { return a.value == b.value && a.start == b.start; }));
    EXPECT_EQ(heard.calls, inEmulator.calls);
}

TEST_P(Player, WritesNothingForTheSmallestImage)
{
    const auto heard = PlayRecording("");
    EXPECT_TRUE(heard.levels.empty());
    EXPECT_EQ(heard.calls.size(), 3U);
    EXPECT_TRUE(heard.interruptsAfterwards);
}

TEST_P(Player, SoundsLikeTheRecording)
{
    std::mt19937 random(1600);
    std::normal_distribution<double> noise(0, 12);
    const double perSecond = GetParam().hertz;
    const auto record = [&](auto frequencyAt, auto loudnessAt) { // two seconds
        std::string samples;
        double phase = 0;
        for (double t = 0; t < 2; t += 1 / perSecond) {
            phase += 2 * std::numbers::pi * frequencyAt(t) / perSecond;
            const double value = 128 + 100 * loudnessAt(t) * std::sin(phase) + noise(random) * loudnessAt(t);
            samples += static_cast<char>(std::lround(std::clamp(value, 0.0, 255.0)));
        }
        return samples;
    };
    const auto steady = [](double) { return 1.0; };
    for (const auto& samples : {
             record([](double) { return 440.0; }, steady),                       // a tone
             record([](double t) { return 15 * std::pow(100, t / 2); }, steady), // a sweep, 15 to 1500 Hz
             record([](double t) { return 150 + 90 * std::sin(9 * t); },         // syllables in hiss
                    [](double t) { return std::max(0.0, std::sin(12 * t)); }),
         }) {
        const auto distances = FallDistances(samples);
        ASSERT_GT(distances.size(), 20U);
        const auto heard = PlayRecording(samples);

        // A period begins where the port rises, and every low level ends one.
        std::vector<long> starts;
        for (std::size_t i = 0; i < heard.levels.size(); ++i)
            if (i == 0 || heard.levels[i - 1].value == 0x40) starts.push_back(heard.levels[i].start);
        ASSERT_EQ(starts.size(), distances.size()); // nothing is lost but what lies behind the last fall
        for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
            // A sample is two steps; each byte costs 100 T-states more, or 107 where it continues a period. The byte 0
            // plays as 256, so a period of exactly 254 samples comes out 256 samples longer.
            const long samplesPlayed = distances[i] == 254 ? 510 : distances[i];
            const long overhead = starts[i + 1] - starts[i] - samplesPlayed * 2 * GetParam().step;
            EXPECT_GE(overhead, 100);
            EXPECT_LE(overhead, 100 + 107 * (distances[i] / 254));
        }
    }
}

} // namespace
