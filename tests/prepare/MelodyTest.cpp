// Tones made here, and what the machine's port plays of them, by the times that it takes.
#include "support/PrepareSound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace prepare;

struct Note {
    double hertz; // 0 is silence
    double seconds;
};

/// Plucked strings one after another: eight partials, the higher the softer, that fade to a tenth within half a second;
/// noise 50 dB below them. A vibrato goes with as much tremolo as it has semitones.
sound::Samples Plucked(const std::vector<Note>& notes, double vibrato = 0)
{
    sound::Samples sound;
    std::minstd_rand random;
    for (const auto& note : notes) {
        double phase = 0;
        const auto samples = static_cast<int>(note.seconds * sound::kRate);
        for (int i = 0; i < samples; ++i) {
            const double seconds = static_cast<double>(i) / sound::kRate;
            const double semitones = vibrato * std::sin(2 * std::numbers::pi * 6 * seconds);
            phase += 2 * std::numbers::pi * note.hertz * std::exp2(semitones / 12) / sound::kRate;
            double sample = 0;
            for (int partial = 1; partial <= 8; ++partial)
                sample += std::sin(partial * phase) / (partial * partial);
            sample *= 0.4 * (1 + semitones) * std::pow(0.1, 2 * seconds);
            sound.push_back(static_cast<float>(sample + 1e-12 * static_cast<double>(random())));
        }
    }
    return sound;
}

machine::RunBytes Melody(const sound::Samples& sound, const machine::Playback& playback,
                         std::size_t mostRunBytes = 100'000)
{
    return RunBytesFor(Kind::Music, sound, playback, mostRunBytes);
}

/// Periods of the port from one time to another; a byte 254, which is silence, is none.
struct Heard {
    int periods = 0;
    double hertz = 0; // their mean
};

Heard HeardWithin(const machine::RunBytes& runBytes, const machine::Playback& playback, double from, double to)
{
    Heard heard;
    double time = 0;
    double sounding = 0;
    for (const auto byte : runBytes) {
        const double seconds = machine::SecondsOf(machine::CyclesOf(byte, playback), playback.machine);
        if (byte != 254 && time >= from && time + seconds <= to) {
            ++heard.periods;
            sounding += seconds;
        }
        time += seconds;
    }
    if (heard.periods > 0) heard.hertz = heard.periods / sounding;
    return heard;
}

double Cents(double hertz, double reference)
{
    return 1200 * std::log2(hertz / reference);
}

std::ptrdiff_t Silences(const machine::RunBytes& runBytes)
{
    return std::ranges::count(runBytes, 254);
}

TEST(Melody, PlaysEachNoteAtItsPitchAndTime)
{
    const std::vector<Note> notes{{207.65, 0.4}, {329.63, 0.25}, {0, 0.3}, {880, 0.4}, {466.16, 0.25}, {98, 0.5}};
    std::vector<Note> recorded{{0, 0.7}};
    recorded.insert(recorded.end(), notes.begin(), notes.end());
    recorded.push_back({0, 0.7}); // neither this nor the first silence is kept
    auto sound = Plucked(recorded);
    for (std::size_t i = 0; i < sound.size(); ++i) // an offset and a soft hum, which are no notes where the tune pauses
        sound[i] += 0.01F + 0.01F * static_cast<float>(std::sin(2 * std::numbers::pi * 100 * sound::SecondsAt(i)));
    for (const auto& playback : {At(6000), At(8000), At(11025), At(8000, {3'580'000, 0}), At(11025, {4'000'000, 1})}) {
        SCOPED_TRACE(testing::Message() << playback.rate.hertz << " " << playback.machine.clock);
        const auto runBytes = Melody(sound, playback);
        double start = 0;
        for (const auto& [hertz, seconds] : notes) {
            const auto heard = HeardWithin(runBytes, playback, start + 0.06, start + seconds - 0.06);
            if (hertz == 0)
                EXPECT_EQ(heard.periods, 0);
            else
                EXPECT_NEAR(Cents(heard.hertz, hertz), 0, 8) << hertz;
            start += seconds;
        }
        EXPECT_GT(HeardWithin(runBytes, playback, start - 0.1, start).periods, 5);
        EXPECT_EQ(HeardWithin(runBytes, playback, start + 0.06, 9).periods, 0);
        EXPECT_EQ(std::ranges::count_if(runBytes, [](auto byte) { return byte < 2 || byte == 255; }), 0);
        EXPECT_NE(runBytes.back(), 254); // a recording can't lead to one there
    }
}

TEST(Melody, LeavesTheTuneOnlyByOctavesWhereNoByteIsAsLongOrAsShort)
{
    for (const auto& [clock, played, heard] : {std::tuple(20'000'000, 98.0, 392.0),
                                               {1'000'000, 3000.0, 750.0},
                                               {3'580'000, 3322.4, 3322.4},
                                               {3'580'000, 55.0, 55.0}}) {
        const auto playback = At(11025, {clock, 1});
        const auto runBytes = Melody(Plucked({{played, 0.5}}), playback);
        EXPECT_NEAR(Cents(HeardWithin(runBytes, playback, 0, 1).hertz, heard), 0, 10) << played;
    }
}

TEST(Melody, RoundsWithoutAPattern)
{
    const auto runBytes = Melody(Plucked({{740, 1.0}}), At(8000)); // 10.45 counts
    ASSERT_GT(runBytes.size(), 600U);
    for (std::size_t lag = 1; lag <= 12; ++lag) {
        std::size_t same = 0;
        for (auto i = lag; i < runBytes.size(); ++i)
            same += runBytes[i] == runBytes[i - lag] ? 1 : 0;
        EXPECT_LT(same, runBytes.size() * 6 / 10) << lag;
    }
}

TEST(Melody, SeparatesNotesOfTheSamePitchAndNothingElse)
{
    EXPECT_EQ(Silences(Melody(Plucked({{440, 0.4}, {440, 0.4}, {440, 0.4}}), At(11025))), 2);
    EXPECT_EQ(Silences(Melody(Plucked({{440, 0.4}, {440, 0.4}}), At(11025, {1'000'000, 1}))), 1); // of 88 ms there
    EXPECT_EQ(Silences(Melody(Plucked({{440, 0.6}}, 0.6), At(11025))), 0);
}

TEST(Melody, IsFoundAboveChordsAndNoise)
{
    auto sound = Plucked({{587.33, 0.5}, {392, 0.5}, {493.88, 0.5}});
    const auto low = Plucked({{98, 0.75}, {146.83, 0.75}});
    const auto high = Plucked({{196, 0.5}, {246.94, 0.5}, {293.66, 0.5}});
    unsigned noise = 1;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        noise = noise * 1664525 + 1013904223;
        sound[i] += 0.6F * low[i] + 0.4F * high[i] + 0.05F * (static_cast<float>(noise >> 16) / 65536 - 0.5F);
    }
    const auto runBytes = Melody(sound, At(8000));
    for (const auto& [hertz, start] : {std::pair(587.33, 0.0), {392, 0.5}, {493.88, 1.0}})
        EXPECT_NEAR(Cents(HeardWithin(runBytes, At(8000), start + 0.06, start + 0.4).hertz, hertz), 0, 10) << hertz;
}

TEST(Melody, KeepsTheBeginningsOfNotesWhereItIsTooLong)
{
    const auto sound = Plucked({{440, 0.5}, {660, 0.5}, {550, 0.5}});
    EXPECT_NEAR(static_cast<double>(Melody(sound, At(8000), 850).size()), 825, 15); // as long as it fits: whole
    const auto shorter = Melody(sound, At(8000), 500);
    EXPECT_LE(shorter.size(), 500U);
    EXPECT_GT(shorter.size(), 450U);
    EXPECT_NEAR(Cents(HeardWithin(shorter, At(8000), 1.06, 1.25).hertz, 550), 0, 8);
    EXPECT_EQ(HeardWithin(shorter, At(8000), 0.36, 0.46).periods, 0);
    EXPECT_FALSE(Melody(sound, At(8000), 370).empty());
    EXPECT_TRUE(Melody(sound, At(8000), 290).empty()); // two fifths at least
}

} // namespace
