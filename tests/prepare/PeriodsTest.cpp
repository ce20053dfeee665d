#include "core/PeriodEncoder.h"
#include "core/RecordingBytes.h"
#include "machine/Timing.h"
#include "support/PrepareSound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <random>
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
        ASSERT_EQ(Encoded(core::RecordingBytes(bytes, At(8000).rate)), bytes);
    }
}

TEST(RecordingBytes, LeadToALongPeriodAheadOfOneOf254Samples)
{
    for (const auto& bytes : {machine::RunBytes{254, 0},
                              {254, 254, 254, 0},          // 508, 254
                              {254, 254, 254, 254, 0, 5}}) // 762, 254, 5
        EXPECT_EQ(Encoded(core::RecordingBytes(bytes, At(8000).rate)), bytes);
}

TEST(RecordingBytes, AreAWaveFileWithAHeaderOf44Bytes)
{
    const std::string header("RIFF\x2b\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x11\x2b\0\0\x11\x2b\0\0\1\0\x08\0data\x07\0\0\0",
                             44);
    EXPECT_EQ(core::RecordingBytes(machine::RunBytes{5}, At(11025).rate), header + "@\xC0\xC0\xC0@@@");
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

/// Those from one time to another.
std::vector<double> Between(const std::vector<double>& edges, double from, double to)
{
    return {std::ranges::lower_bound(edges, from), std::ranges::lower_bound(edges, to)};
}

TEST(SoundPeriods, KeepThePitchOnEachMachine)
{
    for (const auto rate : {6000U, 8000U, 11025U})
        for (const auto clock : {2'000'000, 3'580'000, 8'000'000})
            for (const auto waits : {0, 1})
                for (const auto hertz : {130.0, 440.0}) { // a low voice's, and a tuning fork's
                    const auto playback = At(rate, {.clock = clock, .waits = waits});
                    const auto list = RunBytesFor(Kind::AnySound, Between(0, 1, 1, Tone(hertz)), playback);
                    const auto edges = Between(EdgesOf(list, playback), 0.1, 0.9); // past where the sound sets in
                    ASSERT_GT(edges.size(), 1.5 * hertz);
                    const auto periods = static_cast<double>(edges.size() - 1) / 2;
                    EXPECT_NEAR(1200 * std::log2(periods / (edges.back() - edges.front()) / hertz), 0, 3); // cents
                }
}

TEST(SpeechPeriods, FillTheSizeAskedForAndNoMore)
{
    const auto sound = Between(0, 3, 3, Syllables);
    const auto most = RunBytesFor(Kind::Speech, sound, At(11025)).size();
    for (const auto part : {0.5, 0.7, 0.9}) {
        const auto asked = static_cast<std::size_t>(part * static_cast<double>(most));
        const auto size = RunBytesFor(Kind::Speech, sound, At(11025), asked).size();
        EXPECT_LE(size, asked);
        EXPECT_GE(size, asked * 9 / 10);
    }
    const auto refusal = std::get<Refusal>(PrepareSound(Kind::Speech, sound, At(11025), 20));
    EXPECT_EQ(refusal.kind, Refusal::Kind::TooManyBytes);
    EXPECT_LT(refusal.seconds, 1.5); // of 3
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
        const auto list = RunBytesFor(Kind::Speech, sound, At(11025));
        const auto edges = EdgesOf(list, At(11025));
        ASSERT_FALSE(edges.empty());
        EXPECT_NEAR(edges.back(), 2.85 - 0.9, 0.06);
        EXPECT_GT(Between(edges, 0.01, 0.14).size(), 40U);
        EXPECT_TRUE(Between(edges, 0.55, 1.7).empty()); // from 0.1 s behind the first to 0.1 s before the second
        // A run byte is 24.7 ms of silence; the rest of a pause takes some others.
        EXPECT_NEAR(static_cast<double>(std::ranges::count(list, 254)), (1.35 + 0.15) / 0.0247, 12);
    }
}

} // namespace
