// What the studio draws: peaks, spectrograms, colours, rulers.
#include "prepare/Levels.h"
#include "studio/ColourMap.h"
#include "studio/Spectrogram.h"
#include "studio/Waveform.h"
#include "studio/Words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace {

using namespace studio;

TEST(Waveform, ShowsEachPeakHoweverLongTheSoundIs)
{
    std::mt19937 random(3); // the same each time
    std::vector<float> sound(1'000'000);
    for (auto& sample : sound)
        sample = static_cast<float>(random() % 2001) / 1000 - 1;
    Waveform waveform(44100, 2);
    for (std::size_t k = 0; k < sound.size(); k += 777)
        waveform.Take(std::span(sound).subspan(k, std::min<std::size_t>(777, sound.size() - k)));
    EXPECT_DOUBLE_EQ(waveform.Covered().from, 2);
    EXPECT_DOUBLE_EQ(waveform.Covered().to, 2 + 1e6 / 44100);
    EXPECT_DOUBLE_EQ(waveform.SecondsPerBin(), 16 / 44100.0); // so no more than 65536 of them

    const auto columns = waveform.Columns({2, 2 + 1e6 / 44100}, 625); // 1600 samples each: 100 bins
    for (std::size_t k = 0; k < columns.size(); ++k) {
        const auto first = sound.begin() + static_cast<std::ptrdiff_t>(1600 * k);
        EXPECT_LE(columns[k].low, *std::min_element(first, first + 1600));
        EXPECT_GE(columns[k].high, *std::max_element(first, first + 1600));
        EXPECT_GE(columns[k].low, *std::min_element(first - (k > 0 ? 16 : 0), first + (k < 624 ? 1616 : 1600)));
    }
}

TEST(Waveform, HoldsASampleOverAllColumnsThatItFillsAndNothingOutside)
{
    Waveform waveform(1000);
    waveform.Take(std::vector<float>{0, 0.25F, -0.5F, 1});
    const auto columns = waveform.Columns({-0.001, 0.005}, 12);
    std::vector<float> highs(columns.size());
    std::ranges::transform(columns, highs.begin(), [](const Peak& peak) { return peak.IsThere() ? peak.high : 9; });
    EXPECT_EQ(highs, (std::vector<float>{9, 9, 0, 0, 0.25F, 0.25F, -0.5F, -0.5F, 1, 1, 9, 9}));
    EXPECT_DOUBLE_EQ(waveform.FirstAbove(0.4F), 0.002);
    EXPECT_DOUBLE_EQ(waveform.FirstAbove(2), 0.004);
}

TEST(Spectrogram, ShowsAToneWhereAndWhenItSounds)
{
    std::vector<float> sound(220500); // 10 s, several pieces
    for (std::size_t k = 110250; k < 154350; ++k)
        sound[k] = static_cast<float>(std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(k) / 22050) / 8);
    const Spectrogram spectrogram(sound, 20, core::Progress([](double /*done*/) { return true; }));
    EXPECT_NEAR(spectrogram.Covered().to, 30, 0.02);
    constexpr std::size_t kColumns = 120;
    constexpr std::size_t kRows = 100;
    const auto picture = spectrogram.Picture({19, 31}, kColumns, kRows); // 0.1 s a column
    const auto row = static_cast<std::size_t>(HeightOf(1000) * kRows);
    for (std::size_t x = 0; x < kColumns; ++x) {
        if (x == 59 || x == 60 || x == 79 || x == 80) continue; // the windows at its ends
        const bool sounds = x > 60 && x < 79;
        EXPECT_EQ(picture[row * kColumns + x] > 245, sounds) << x;
        EXPECT_LT(picture[(row - 20) * kColumns + x], 30) << x;
        EXPECT_LT(picture[(row + 20) * kColumns + x], 30) << x;
    }
    EXPECT_DOUBLE_EQ(HeightOf(0), 1);
    EXPECT_DOUBLE_EQ(HeightOf(8000), 0);
}

/// CIE L* of sRGB, and what is left of a colour for eyes without the cones for green (Vienot, Brettel, Mollon: Digital
/// video colourmaps for checking the legibility of displays by dichromats, 1999).
double LightnessOf(const Colour& colour, bool withoutGreen)
{
    const auto linear = [](std::uint8_t value) {
        const auto v = value / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    auto r = linear(colour.red);
    auto g = linear(colour.green);
    auto b = linear(colour.blue);
    if (withoutGreen) {
        const auto both = 0.29275 * r + 0.70725 * g;
        b = -0.02234 * r + 0.02234 * g + b;
        r = g = both;
    }
    const auto y = 0.2126 * r + 0.7152 * g + 0.0722 * b;
    return y > 216.0 / 24389 ? 116 * std::cbrt(y) - 16 : 24389.0 / 27 * y;
}

TEST(ColourMap, GrowsLighterByEvenStepsForAllEyes)
{
    const auto& map = ColourMap();
    EXPECT_NEAR(LightnessOf(map.front(), false), 8, 0.5);
    EXPECT_NEAR(LightnessOf(map.back(), false), 93, 0.5);
    for (std::size_t level = 8; level < map.size(); ++level) {
        EXPECT_NEAR(LightnessOf(map[level], false) - LightnessOf(map[level - 8], false), 8 * 85.0 / 255, 0.5);
        EXPECT_NEAR(LightnessOf(map[level], true) - LightnessOf(map[level - 8], true), 8 * 85.0 / 255, 0.9) << level;
    }
}

TEST(Words, TellTimesAndRulers)
{
    for (const auto& [seconds, decimals, text] : std::vector<std::tuple<double, int, std::string>>{
             {65.5, 1, "1:05.5"}, {59.9996, 3, "1:00.000"}, {3725, 0, "62:05"}, {0.25, 3, "0:00.250"}})
        EXPECT_EQ(TimeText(seconds, decimals), text);
    for (const auto& [least, step] : std::vector<std::pair<double, double>>{
             {0.0013, 0.002}, {0.2, 0.2}, {0.3, 0.5}, {0.8, 1}, {7, 10}, {11, 15}, {45, 60}, {700, 900}, {5000, 7200}})
        EXPECT_DOUBLE_EQ(RulerStep(least), step) << least;
}

TEST(Words, AreWholeInBothLanguages)
{
    State state;
    state.file.emplace();
    state.file->name = "a.mp3";
    state.file->axis = 125;
    state.part = {.from = 10, .to = 30};
    state.reading.done = 0.4;
    state.meter = {.bytes = 12034, .room = 28474, .seconds = 15.25, .moreSeconds = 20.84, .fits = {}};
    EXPECT_EQ(MeterText(state, Language::English),
              "12034 of 28474 bytes, plays for 15.2 s; about 20.8 s more would fit");
    EXPECT_EQ(MeterText(state, Language::German),
              "12034 von 28474 Bytes, spielt 15,2 s; etwa 20,8 s mehr würden passen");
    EXPECT_EQ(WaveformText(state, Language::English),
              "Waveform of a.mp3, 2:05.0 long, 40 percent read; chosen: 0:10.0 to 0:30.0");
    EXPECT_EQ(WaveformText(state, Language::German),
              "Wellenform von a.mp3, 2:05.0 lang, 40 Prozent gelesen; gewählt: 0:10.0 bis 0:30.0");
    for (int kind = 0; kind <= static_cast<int>(sound::Refusal::Kind::EndlesslyLong); ++kind) {
        const Notice notice{.file = "a", .what = sound::Refusal{.kind = static_cast<sound::Refusal::Kind>(kind)}};
        EXPECT_NE(TextOf(notice, Language::English), TextOf(notice, Language::German)) << kind;
    }
    for (int event = 0; event <= static_cast<int>(Event::NoMemory); ++event) {
        const Notice notice{.file = "a", .what = static_cast<Event>(event)};
        EXPECT_NE(TextOf(notice, Language::English), TextOf(notice, Language::German)) << event;
    }
}

} // namespace
