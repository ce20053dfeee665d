#include "core/PeriodEncoder.h"
#include "core/RecordingBytes.h"
#include "machine/Timing.h"
#include "prepare/PeriodChoice.h"
#include "prepare/SpeechTarget.h"
#include "sound/Sound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace prepare;

/// The run bytes that the window would make of `recording`, without the end mark.
machine::RunBytes Encoded(const std::string& recording)
{
    core::BackgroundTask yield([] {});
    return core::EncodePeriods(std::string_view(recording).substr(44), yield).runBytes;
}

const machine::SampleRate& Rate(std::uint32_t hertz)
{
    return *machine::RateOfHertz(hertz);
}

TEST(RecordingBytes, LeadToEveryListThatARecordingCanLeadTo)
{
    std::mt19937 random(1600);
    for (int list = 0; list < 2000; ++list) {
        machine::RunBytes bytes;
        for (auto periods = random() % 40; periods > 0; --periods) { // each as the encoder would write it
            auto length = random() % 2 == 0 ? 2 + random() % 252 : 2 + random() % 1400;
            if (length >= 254) {
                for (bytes.push_back(254), length -= 254; length > 254; length -= 254)
                    bytes.push_back(254);
            }
            bytes.push_back(static_cast<machine::RunByte>(length));
        }
        ASSERT_EQ(Encoded(core::RecordingBytes(bytes, Rate(8000))), bytes);
    }
}

TEST(RecordingBytes, LeadToALongPeriodAheadOfOneOf254Samples)
{
    for (const auto& bytes : {machine::RunBytes{254, 0},
                              {254, 254, 254, 0},          // 508, 254
                              {254, 254, 254, 254, 0, 5}}) // 762, 254, 5
        EXPECT_EQ(Encoded(core::RecordingBytes(bytes, Rate(8000))), bytes);
}

TEST(RecordingBytes, AreAWaveFileWithAHeaderOf44Bytes)
{
    const std::string header("RIFF\x2b\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x11\x2b\0\0\x11\x2b\0\0\1\0\x08\0data\x07\0\0\0",
                             44);
    EXPECT_EQ(core::RecordingBytes(machine::RunBytes{5}, Rate(11025)), header + "@\xC0\xC0\xC0@@@");
}

using Wave = std::function<double(double seconds)>;

/// `wave` from one second to another, of `length` seconds of `sound`; else silence.
sound::Samples Between(double from, double to, double length, const Wave& wave)
{
    sound::Samples sound(static_cast<std::size_t>(length * sound::kRate));
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const auto seconds = static_cast<double>(i) / sound::kRate;
        if (seconds >= from && seconds < to) sound[i] = static_cast<float>(wave(seconds));
    }
    return sound;
}

Wave Tone(double hertz, double level = 0.5)
{
    return [=](double seconds) { return level * std::sin(2 * std::numbers::pi * hertz * seconds); };
}

/// A buzz with overtones, in syllables of 0.15 s with as long a pause behind each.
double Syllables(double seconds)
{
    double voice = 0;
    for (int overtone = 1; overtone <= 20; ++overtone)
        voice += std::sin(2 * std::numbers::pi * 130 * overtone * seconds + overtone * overtone) / overtone;
    return 0.2 * voice * std::max(0.0, std::sin(2 * std::numbers::pi * seconds / 0.3));
}

constexpr std::size_t kAnySize = 28000;

/// What `choose` makes of `sound`.
machine::RunBytes ListOf(decltype(&SpeechPeriods) choose, const sound::Samples& sound,
                         const machine::Playback& playback, std::size_t most = kAnySize)
{
    return choose(sound, {playback, most}, core::Progress([](double /*done*/) { return true; })).runBytes;
}

machine::Playback At(std::uint32_t hertz, std::int64_t clock = 3'580'000, std::int64_t waits = 1)
{
    return {.rate = Rate(hertz), .machine = {.clock = clock, .waits = waits}};
}

/// Where the port falls or rises, in seconds from its first write.
std::vector<double> EdgesOf(const machine::RunBytes& runBytes, const machine::Playback& playback)
{
    std::vector<double> edges;
    bool high = false;
    for (const auto& write : machine::PerformanceOf(runBytes, playback).writes) {
        if (write.high != high)
            edges.push_back(static_cast<double>(write.time) / static_cast<double>(playback.machine.clock));
        high = write.high;
    }
    return edges;
}

int CountBetween(const std::vector<double>& edges, double from, double to)
{
    return static_cast<int>(std::ranges::count_if(edges, [&](double edge) { return edge >= from && edge < to; }));
}

class OnEachMachine : public testing::TestWithParam<std::tuple<std::uint32_t, std::int64_t, std::int64_t>> {
protected:
    machine::Playback playback_ = std::apply(At, GetParam());
};
INSTANTIATE_TEST_SUITE_P(Machines, OnEachMachine,
                         testing::Combine(testing::Values(6000U, 8000U, 11025U),
                                          testing::Values(2'000'000, 3'580'000, 8'000'000), testing::Values(0, 1)));

TEST_P(OnEachMachine, AToneKeepsItsPitch)
{
    const auto edges = EdgesOf(ListOf(SoundPeriods, Between(0, 1, 1, Tone(440)), playback_), playback_);
    ASSERT_GT(edges.size(), 860U);
    const auto first = edges.begin() + 20; // past where the sound sets in
    const auto last = edges.begin() + 820;
    EXPECT_NEAR(1200 * std::log2(400 / (*last - *first) / 440), 0, 3); // cents
}

TEST_P(OnEachMachine, AChirpKeepsItsTime)
{
    const auto chirp = [](double seconds) { return 300 * seconds + 300 * seconds * seconds; }; // its periods until then
    const auto sound =
        Between(0, 1, 1, [&](double seconds) { return 0.5 * std::sin(2 * std::numbers::pi * chirp(seconds)); });
    const auto edges = EdgesOf(ListOf(SoundPeriods, sound, playback_), playback_);
    for (int tenth = 2; tenth < 9; ++tenth)
        EXPECT_NEAR(CountBetween(edges, 0.1, 0.1 * tenth) / 2.0, chirp(0.1 * tenth) - chirp(0.1), 5) << tenth;
}

TEST(SpeechPeriods, LeadToARecordingThatGivesThemBack)
{
    const auto sound = Between(0, 2, 2, Syllables);
    for (const auto hertz : {6000U, 8000U, 11025U})
        for (const auto& list :
             {ListOf(SpeechPeriods, sound, At(hertz), 600), ListOf(SoundPeriods, sound, At(hertz))}) {
            ASSERT_GT(list.size(), 200U);
            EXPECT_EQ(Encoded(core::RecordingBytes(list, Rate(hertz))), list);
        }
}

TEST(SpeechPeriods, FillTheSizeAskedForAndNoMore)
{
    const auto sound = Between(0, 3, 3, Syllables);
    const auto most = ListOf(SpeechPeriods, sound, At(11025)).size();
    for (const auto part : {0.5, 0.7, 0.9}) {
        const auto asked = static_cast<std::size_t>(part * static_cast<double>(most));
        const auto size = ListOf(SpeechPeriods, sound, At(11025), asked).size();
        EXPECT_LE(size, asked);
        EXPECT_GE(size, asked * 9 / 10);
    }
    EXPECT_GT(ListOf(SpeechPeriods, sound, At(11025), 20).size(), 20U); // which tells that it can't be done
}

TEST(SpeechPeriods, AreNoneWhereNothingIsHeard)
{
    for (const auto& silence :
         {sound::Samples(), sound::Samples(1), sound::Samples(sound::kRate), sound::Samples(sound::kRate, 0.05F)})
        EXPECT_TRUE(ListOf(SpeechPeriods, silence, At(11025)).empty()) << silence.size();
}

TEST(SpeechPeriods, HaveSilentPausesAndEnds)
{
    constexpr double kLength = 4;
    std::mt19937 random(1600);
    std::normal_distribution<double> noise(0, 0.0126);
    for (const auto& [name, disturbance] : std::vector<std::pair<const char*, Wave>>{
             {"nothing", [](double /*seconds*/) { return 0; }},
             {"an offset of 5 percent", [](double /*seconds*/) { return 0.05; }},
             {"50 Hz at -24 dB", Tone(50, 0.063)},
             {"100 Hz at -24 dB", Tone(100, 0.063)},
             {"white noise at -38 dB", [&](double /*seconds*/) { return noise(random); }},
             {"clicks", [](double seconds) { return std::fmod(seconds, 0.7) < 0.0002 ? 0.9 : 0; }},
         }) {
        SCOPED_TRACE(name);
        auto sound = Between(0, kLength, kLength, disturbance);
        for (const auto start : {0.9, 2.7}) // two syllables, and one
            std::ranges::transform(sound, Between(start, start + (start < 1 ? 0.6 : 0.3), kLength, Syllables),
                                   sound.begin(), std::plus());
        const auto list = ListOf(SpeechPeriods, sound, At(11025));
        const auto edges = EdgesOf(list, At(11025));
        ASSERT_FALSE(edges.empty());
        EXPECT_NEAR(edges.back(), 2.85 - 0.9, 0.06);
        EXPECT_GT(CountBetween(edges, 0.01, 0.14), 40);
        EXPECT_EQ(CountBetween(edges, 0.55, 1.7), 0); // from 0.1 s behind the first to 0.1 s before the second
        // A run byte is 24.7 ms of silence; the rest of a pause takes some others.
        EXPECT_NEAR(static_cast<double>(std::ranges::count(list, 254)), (1.35 + 0.15) / 0.0247, 12);
    }
}

} // namespace
