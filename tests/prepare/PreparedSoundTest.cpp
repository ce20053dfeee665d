// How alike to a sound is what the machine plays of it. The floors lie between what a fault leaves and what there is.
#include "prepare/SpeechLikeness.h"
#include "preview/SquareWave.h"
#include "support/PrepareSound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <span>
#include <tuple>

namespace {

using namespace prepare;

using Partials = std::vector<std::pair<double, double>>; // Hz, level

/// What sounds from one time on, in seconds, and fades to a tenth within `tenth`.
struct Event {
    double from, seconds, tenth;
    Partials partials;
};

sound::Samples SoundOf(double seconds, const std::vector<Event>& events)
{
    sound::Samples sound(sound::SamplesIn(seconds));
    std::minstd_rand random;
    for (const auto& event : events)
        for (const auto& [hertz, level] : event.partials) {
            const auto phase = static_cast<double>(random() % 1000);
            for (auto i = sound::SamplesIn(event.from); i < sound::SamplesIn(event.from + event.seconds); ++i) {
                const auto since = sound::SecondsAt(i) - event.from;
                const auto ramp = std::min({1.0, since / 0.005, (event.seconds - since) / 0.01});
                sound[i] += static_cast<float>(level * ramp * std::pow(0.1, since / event.tenth) *
                                               std::sin(2 * std::numbers::pi * hertz * since + phase));
            }
        }
    return sound;
}

Partials Hiss(double lowest, double highest, double level)
{
    std::minstd_rand random;
    Partials partials(40);
    for (auto& partial : partials)
        partial = {lowest + (highest - lowest) * static_cast<double>(random() % 1000) / 1000, level};
    return partials;
}

/// Overtones that are loud near two formants, the second of them 30 dB below the first, and a little near a third.
Partials Vowel(double pitch, double first, double second)
{
    Partials partials;
    for (auto hertz = pitch; hertz < 5000; hertz += pitch) {
        const auto near = [&](double formant, double width) {
            return 1 / (1 + std::pow((hertz - formant) / width, 2));
        };
        partials.emplace_back(hertz, 0.3 * near(first, 60) + 0.01 * near(second, 80) + 0.003 * near(2900, 100));
    }
    return partials;
}

/// Three words, each sound of them short, with hisses 30 dB below; the last word stands alone.
sound::Samples Words()
{
    const auto hiss = Hiss(2500, 5000, 0.0017);
    return SoundOf(2.5, {{0.2, 0.12, 9, hiss},
                         {0.32, 0.2, 9, Vowel(120, 700, 1200)},
                         {0.52, 0.15, 9, Vowel(110, 300, 2200)},
                         {0.9, 0.15, 9, Vowel(125, 500, 1700)},
                         {1.08, 0.03, 9, Hiss(1500, 4000, 0.017)},
                         {1.11, 0.2, 9, Vowel(115, 350, 800)},
                         {1.9, 0.1, 9, Vowel(120, 600, 1500)},
                         {2.0, 0.12, 9, hiss}});
}

/// Four bells, each with a hum an octave below its tone, and partials above it that get softer.
sound::Samples Bells()
{
    std::vector<Event> bells;
    for (const auto& [from, tone] : {std::pair(0.1, 392.0), {0.6, 523.0}, {1.1, 330.0}, {1.6, 440.0}})
        bells.push_back({from,
                         0.9,
                         0.5,
                         {{tone / 2, 0.1}, {tone, 0.3}, {tone * 2.4, 0.12}, {tone * 4.1, 0.05}, {tone * 6.3, 0.03}}});
    return SoundOf(2.5, bells);
}

/// Eight beats of a drum, two of them with a cymbal.
sound::Samples Beats()
{
    std::vector<Event> beats;
    for (const auto from : {0.1, 0.4, 0.55, 0.7, 1.0, 1.3, 1.42, 1.6})
        beats.push_back({from, 0.08, 0.06, Hiss(200, from == 0.4 || from == 1.0 ? 5000 : 900, 0.05)});
    return SoundOf(1.8, beats);
}

/// Six chords of five voices, each voice in another band, the upper ones softer; between two chords a drum is struck.
constexpr std::array kChords{
    std::array{131.0, 330.0, 784.0, 1568.0, 2637.0},  std::array{147.0, 349.0, 880.0, 1760.0, 2794.0},
    std::array{165.0, 392.0, 988.0, 1568.0, 3136.0},  std::array{123.0, 294.0, 698.0, 1976.0, 2794.0},
    std::array{131.0, 440.0, 1047.0, 1760.0, 3520.0}, std::array{196.0, 494.0, 784.0, 1568.0, 2960.0}};
constexpr double kBeat = 0.4; // seconds from one chord to the next

sound::Samples Song()
{
    std::vector<Event> events;
    for (const auto& chord : kChords) {
        const auto from = 0.1 + kBeat * static_cast<double>(&chord - kChords.data());
        events.push_back({from, kBeat, 0.9, {}});
        for (double level = 0.3; const auto voice : chord)
            events.back().partials.emplace_back(voice, std::exchange(level, level * 0.6));
        events.push_back({from + kBeat / 2, 0.06, 0.06, Hiss(200, 5000, 0.04)});
    }
    return SoundOf(kBeat * kChords.size() + 0.2, events);
}

constexpr std::size_t kThirds = 15; // of an octave, from 150 to 4800 Hz

/// How much there is of so many turns within `samples`: the Goertzel algorithm.
double PowerOf(double turns, std::span<const double> samples)
{
    const auto turn = 2 * std::cos(2 * std::numbers::pi * turns / static_cast<double>(samples.size()));
    double last = 0, before = 0;
    for (const auto sample : samples)
        before = std::exchange(last, sample + turn * last - before);
    return last * last + before * before - turn * last * before;
}

/// The levels of all thirds every 12 ms: 0 dB at the loudest of all, or of `each` third, and -35 dB at least.
std::vector<double> Listen(const sound::Samples& sound, bool each)
{
    constexpr std::size_t kWindow = 512;
    constexpr auto kTurn = 2 * std::numbers::pi / kWindow;
    std::vector<double> levels;
    std::vector<double> most(kThirds);
    for (std::size_t start = 0; start + kWindow <= sound.size(); start += kWindow / 2) {
        std::vector<double> samples;
        for (std::size_t i = 0; i < kWindow; ++i)
            samples.push_back(sound[start + i] * (1 - std::cos(kTurn * static_cast<double>(i))));
        std::vector<double> powers(kThirds);
        for (double line = 4; line < 112; ++line)
            powers[static_cast<std::size_t>(3 * std::log2(line * sound::kRate / kWindow / 150))] +=
                PowerOf(line, samples);
        levels.insert(levels.end(), powers.begin(), powers.end());
        std::ranges::transform(powers, most, most.begin(), [](double a, double b) { return std::max(a, b); });
    }
    if (!each) most.assign(kThirds, *std::ranges::max_element(most));
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = std::max(-35.0, 10 * std::log10(levels[i] / most[i % kThirds] + 1e-9));
    return levels;
}

double Correlation(std::span<const double> a, std::span<const double> b)
{
    const auto covariance = [](std::span<const double> x, std::span<const double> y) {
        return std::inner_product(x.begin(), x.end(), y.begin(), 0.0) - std::accumulate(x.begin(), x.end(), 0.0) *
                                                                            std::accumulate(y.begin(), y.end(), 0.0) /
                                                                            static_cast<double>(x.size());
    };
    return covariance(a, b) / std::sqrt(covariance(a, a) * covariance(b, b) + 1e-9);
}

/// How alike the thirds are at each moment that isn't soft.
double ColourOf(std::span<const double> wanted, std::span<const double> played)
{
    double sum = 0, moments = 0;
    for (; !wanted.empty(); wanted = wanted.subspan(kThirds), played = played.subspan(kThirds)) {
        if (*std::max_element(wanted.begin(), wanted.begin() + kThirds) < -25) continue;
        sum += Correlation(wanted.first(kThirds), played.first(kThirds));
        ++moments;
    }
    return sum / moments;
}

TEST(SpeechLikeness, IsWholeForTheSpeechItselfAndRisesInItsDirection)
{
    const core::Progress progress([](double /*done*/) { return true; });
    const SpeechLikeness likeness(Words(), progress);
    EXPECT_NEAR(likeness.At(Words(), progress).value, 2, 1e-3);
    sound::Samples noise(Words().size());
    std::minstd_rand random;
    std::ranges::generate(noise, [&] { return 1e-9F * static_cast<float>(random()) - 1.07F; });
    const auto [value, direction] = likeness.At(noise, progress);
    const auto length = std::inner_product(direction.begin(), direction.end(), direction.begin(), 0.0);
    const auto tenth = static_cast<float>(0.1 * std::sqrt(static_cast<double>(noise.size()) / length));
    std::transform(noise.begin(), noise.end(), direction.begin(), noise.begin(),
                   [=](float sample, float change) { return sample + tenth * change; });
    EXPECT_LT(value, 0.1);
    EXPECT_GT(likeness.At(noise, progress).value, 1.28); // 1.33; 1.24 without the rhythm's direction
}

TEST(PreparedSound, IsNoneWhereNothingIsHeard)
{
    for (const auto kind : kKinds)
        for (const auto& sound : {sound::Samples(), sound::Samples(1), sound::Samples(sound::kRate),
                                  sound::Samples(kind == Kind::Music ? 0 : sound::kRate, 0.05F)}) // an offset
            EXPECT_EQ(std::get<Refusal>(PrepareSound(kind, sound, At(8000), 28000)).kind, Refusal::Kind::Inaudible)
                << NameOf(kind) << sound.size();
}

/// What the machine plays, from the sound's beginning on and as long as it.
sound::Samples PlayedOf(const Prepared& prepared, std::size_t samples)
{
    std::string wave;
    preview::WriteWave(machine::PerformanceOf(prepared.runBytes, At(11025)), At(11025).machine.clock, sound::kRate,
                       [&](std::string_view bytes) { wave += bytes; });
    sound::Samples played(sound::SamplesIn(prepared.from - 10));
    for (std::size_t high = 45; high < wave.size(); high += 2) // of each sample's two bytes
        played.push_back(static_cast<signed char>(wave[high]));
    played.resize(samples);
    return played;
}

/// The share that each voice of a song has in its loudness, in dB, in the mean of all chords.
std::vector<double> VoicesIn(const sound::Samples& song)
{
    std::vector<double> voices(kChords.front().size());
    for (const auto& chord : kChords) {
        const auto from = sound::SamplesIn(0.14 + kBeat * static_cast<double>(&chord - kChords.data()));
        std::vector<double> samples(sound::SamplesIn(kBeat - 0.07));
        double power = 0;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const auto window =
                1 - std::cos(2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(samples.size()));
            samples[i] = window * song[from + i];
            power += samples[i] * samples[i] * static_cast<double>(samples.size());
        }
        for (std::size_t voice = 0; voice < chord.size(); ++voice)
            voices[voice] += 10 *
                             std::log10(PowerOf(chord[voice] * sound::SecondsAt(samples.size()), samples) / power) /
                             static_cast<double>(kChords.size());
    }
    return voices;
}

TEST(PreparedSound, HasAllVoicesOfASongAndItsBeats)
{
    const auto song = Song();
    const auto prepared = std::get<Prepared>(PrepareSound(Kind::Music, song, At(11025), 28000));
    EXPECT_EQ(prepared.kind, Kind::Music);
    const auto voices = VoicesIn(PlayedOf(prepared, song.size()));
    for (const auto& [voice, least] : {std::pair(0U, -17.0), {1U, -17.0}, {2U, -19.0}, {3U, -25.0}, {4U, -37.0}})
        EXPECT_GE(voices[voice], least) << voice;
}

TEST(PreparedSound, IsLikeTheSound)
{
    // Of each: the least colour and rhythm, the most run bytes, the least of them silent, from when to when heard.
    // What there is of the first three, and what a fault leaves, stands above it.
    for (const auto& [kind, sound, colour, rhythm, most, silent, from, to] :
         std::vector<std::tuple<Kind, sound::Samples, double, double, std::size_t, std::ptrdiff_t, double, double>>{
             // 0.66, 0.73 and 1375; a colour to 0.55 without the rounds
             {Kind::Speech, Words(), 0.61, 0.65, 2000, 26, 0.2, 2.12},
             // 0.71, 0.55 and 1049; a colour of 0.63 by bands all alike
             {Kind::AnySound, Bells(), 0.69, 0.48, 1600, 0, 0.1, 2.5},
             // 0.74, 0.56 and 652; a colour of 0.67 without the upper bands, a rhythm of 0.47 without silence
             {Kind::AnySound, Beats(), 0.70, 0.51, 1000, 26, 0.1, 1.68},
         }) {
        SCOPED_TRACE(testing::Message() << NameOf(kind) << " to " << to);
        const auto prepared = std::get<Prepared>(PrepareSound(kind, sound, At(11025), 28000));
        EXPECT_LE(prepared.runBytes.size(), most);
        EXPECT_GE(std::ranges::count(prepared.runBytes, machine::kStaysHigh), silent);
        EXPECT_NEAR(prepared.from, 10 + from, 0.03);
        EXPECT_NEAR(prepared.from + prepared.seconds, 10 + to, 0.05);
        const auto played = PlayedOf(prepared, sound.size());
        const auto wantedLevels = Listen(sound, kind == Kind::Speech);
        const auto playedLevels = Listen(played, false);
        EXPECT_GE(ColourOf(wantedLevels, playedLevels), colour);
        EXPECT_GE(Correlation(wantedLevels, playedLevels), rhythm);
    }
}

TEST(PreparedSound, IsWholeWhereTheSoundIsSoft)
{
    const Partials chord{{220, 0.1}, {277, 0.1}, {330, 0.1}, {660, 0.03}};
    const Partials soft{{196, 0.02}, {247, 0.02}, {294, 0.02}, {588, 0.01}};
    for (const auto& [name, events] : std::vector<std::pair<const char*, std::vector<Event>>>{
             {"swells", {{0, 1.4, -1.2, soft}, {1.4, 1.4, -1.2, soft}}},
             {"fades out", {{0, 3, 2.5, chord}}},
             {"a soft chord between loud ones", {{0, 1.2, 9, chord}, {1.2, 1.2, 9, soft}, {2.4, 1.2, 9, chord}}},
         })
        for (const auto kind : {Kind::Speech, Kind::AnySound}) {
            const auto list = RunBytesFor(kind, SoundOf(events.back().from + events.back().seconds, events), At(8000));
            EXPECT_LE(std::ranges::count(list, machine::kStaysHigh), 3) << name << " as " << NameOf(kind);
        }
    std::vector<Event> ticks;
    for (const auto from : {0.1, 0.5, 0.9, 1.3, 1.7, 2.1, 2.5, 2.9})
        ticks.push_back({from, 0.02, 9, Hiss(300, 4000, 0.05)});
    auto withTone = ticks;
    withTone.push_back({3.3, 0.3, 9, chord});
    for (const auto& [events, seconds] :
         {std::pair(ticks, 2.82), {std::vector<Event>(ticks.begin(), ticks.begin() + 1), 0.02}, {withTone, 3.5}})
        for (const auto kind : {Kind::Speech, Kind::AnySound})
            EXPECT_NEAR(std::get<Prepared>(PrepareSound(kind, SoundOf(3.6, events), At(8000), 28000)).seconds, seconds,
                        0.05);
}

TEST(PreparedSound, HasSilenceInPlaceOfNoiseUnlessThatIsKept)
{
    auto hissing = Words();
    std::minstd_rand random;
    for (auto& sample : hissing)
        sample += 1e-11F * static_cast<float>(random()) - 0.0107F;
    const auto bare = RunBytesFor(Kind::Speech, hissing, At(8000));
    hissing.insert(hissing.begin(), sound::kRate / 2, 0.0F); // tells nothing of the noise
    hissing.insert(hissing.end(), sound::kRate / 2, 0.0F);
    const auto between = RunBytesFor(Kind::Speech, hissing, At(8000));
    const auto kept = RunBytesFor(Kind::Speech, hissing, At(8000), 28000, prepare::Noise::Kept);
    EXPECT_NEAR(static_cast<double>(between.size()), static_cast<double>(bare.size()), 100);
    EXPECT_GT(std::ranges::count(between, machine::kStaysHigh), 20);
    EXPECT_EQ(std::ranges::count(kept, machine::kStaysHigh), 0);
}

} // namespace
