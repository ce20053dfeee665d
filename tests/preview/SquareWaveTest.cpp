// The Wave file, listened to: edges where the port has them, no tones that it hasn't.
#include "SquareWave.h"
#include "SoundFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

namespace {

using namespace preview;

constexpr std::int64_t kClock = 3'580'000;

std::string WaveOf(const Performance& performance, std::int64_t outputRate)
{
    std::string file;
    EXPECT_TRUE(WriteWave(performance, kClock, outputRate, [&](std::string_view bytes) {
        EXPECT_LE(bytes.size(), 16384U);
        file += bytes;
        return true;
    }));
    return file;
}

std::vector<double> SamplesOf(const std::string& wave)
{
    std::vector<double> samples;
    for (std::size_t i = 44; i + 1 < wave.size(); i += 2)
        samples.push_back(static_cast<std::uint8_t>(wave[i]) + 256 * static_cast<std::int8_t>(wave[i + 1]));
    return samples;
}

Performance Play(std::uint32_t sampleRate, const std::string& runBytes)
{
    return PerformanceOf({.loadAddress = {}, .sampleRate = sampleRate, .title = "", .runBytes = runBytes}, 1);
}

TEST(SquareWave, IsAWaveFileThatLastsAsLongAsTheSound)
{
    // Byte 2 at 8000 Hz: 501 + 517 = 1018 cycles are 12.54 samples at 44100 Hz, and 13 samples are 26 bytes.
    const auto wave = WaveOf(Play(8000, "\2"), 44100);
    EXPECT_EQ(wave.substr(0, 44), Bytes("52 49 46 46 3e 00 00 00 57 41 56 45 66 6d 74 20 10 00 00 00 01 00 01 00 44 ac "
                                        "00 00 88 58 01 00 02 00 10 00 64 61 74 61 1a 00 00 00"));
    EXPECT_EQ(wave.size(), 44U + 26U);
    EXPECT_EQ(WaveOf(Play(8000, ""), 44100).size(), 44U);
    int pieces = 0;
    EXPECT_FALSE(WriteWave(Play(8000, std::string(2000, '\xC8')), kClock, 44100, [&](auto) { return ++pieces < 3; }));
    EXPECT_EQ(pieces, 3); // none is forced on a sink that has given up
}

TEST(SquareWave, CrossesZeroWhereThePortChanges)
{
    std::mt19937 random(1600);
    for (const std::uint32_t recording : {6000, 8000, 11025})
        for (const std::int64_t rate : {22050, 44100, 192000}) {
            std::string runBytes;
            for (int i = 0; i < 400; ++i)
                runBytes += static_cast<char>(2 + random() % (i % 2 == 0 ? 9 : 253)); // 254 and so long periods too
            const auto performance = Play(recording, runBytes);
            const auto samples = SamplesOf(WaveOf(performance, rate));

            std::vector<double> expected; // in output samples; the first edge is where the file begins
            bool high = true;
            for (const auto& write : performance.writes)
                if (std::exchange(high, write.high) != write.high)
                    expected.push_back(static_cast<double>(write.time * rate) / static_cast<double>(kClock));
            std::vector<double> found;
            for (std::size_t i = 1; i + 1 < samples.size(); ++i)
                if ((samples[i] < 0) != (samples[i + 1] < 0))
                    found.push_back(static_cast<double>(i) + samples[i] / (samples[i] - samples[i + 1]));
            ASSERT_EQ(found.size(), expected.size()) << recording << " at " << rate;
            for (std::size_t i = 0; i < found.size(); ++i)
                ASSERT_NEAR(found[i], expected[i], 0.2) << recording << " at " << rate; // half a sample is allowed
            EXPECT_GT(samples[1], 0);
        }
}

/// The amplitudes of 0, 1, ... size / 2 periods in `samples`. Requires: the size is a power of two.
std::vector<double> Spectrum(std::vector<std::complex<double>> samples)
{
    for (auto size = samples.size(); size > 1; size /= 2) // a decimation in frequency
        for (std::size_t start = 0; start < samples.size(); start += size)
            for (std::size_t i = start; i < start + size / 2; ++i) {
                const auto turn = -2 * std::numbers::pi * static_cast<double>(i - start) / static_cast<double>(size);
                const auto other = samples[i + size / 2];
                samples[i + size / 2] = (samples[i] - other) * std::polar(1.0, turn);
                samples[i] += other;
            }
    std::vector<double> amplitudes(samples.size() / 2);
    for (std::size_t i = 0; i < samples.size(); ++i) { // which leaves line i at the place of i's bits in reverse
        std::size_t line = 0;
        for (std::size_t bit = 1; bit < samples.size(); bit *= 2)
            line = 2 * line + ((i & bit) != 0 ? 1 : 0);
        if (line < amplitudes.size()) amplitudes[line] = std::abs(samples[i]);
    }
    return amplitudes;
}

TEST(SquareWave, HasNoToneButTheHarmonics)
{
    constexpr std::size_t kSize = 32768;
    constexpr double kLines = 4; // how far a tone spreads under the window
    struct Row {
        std::uint32_t recording;
        char byte;
        std::int64_t rate;
        double fundamental; // Hz: the clock by 2 N D + 114
    };
    for (const auto& [recording, byte, rate, fundamental] : std::vector<Row>{
             {11025, 2, 44100, 4441.6873}, // the highest, three harmonics below the half rate
             {11025, 9, 44100, 1109.0458},
             {8000, 3, 44100, 2435.3741},
             {6000, 100, 44100, 59.5533},
             {8000, 18, 8000, 433.9394},  // the lowest rate: all aliases are heard
             {11025, 7, 8300, 1411.6719}, // whose third harmonic is just above the half rate
             {8000, 18, 192000, 433.9394},
         }) {
        const auto periods = static_cast<std::size_t>(fundamental * (kSize + 1000) / static_cast<double>(rate));
        const auto samples = SamplesOf(WaveOf(Play(recording, std::string(periods, byte)), rate));
        ASSERT_GT(samples.size(), kSize + 100);
        const auto from = samples.begin() + 100;
        const auto [least, most] = std::minmax_element(from, samples.end());
        EXPECT_TRUE(*least > -22000 && *most < 22000); // 16000 and what a band-limited edge swings over
        std::vector<std::complex<double>> windowed;
        double sum = 0;
        double power = 0;
        for (std::size_t i = 0; i < kSize; ++i) {
            const auto turn = 2 * std::numbers::pi * static_cast<double>(i) / kSize;
            const auto window = 0.35875 - 0.48829 * std::cos(turn) + 0.14128 * std::cos(2 * turn) -
                                0.01168 * std::cos(3 * turn); // Blackman-Harris, -92 dB
            const auto sample = *(from + static_cast<std::ptrdiff_t>(i));
            windowed.emplace_back(sample * window);
            sum += sample;
            power += sample * sample;
        }
        EXPECT_LT(std::abs(sum / kSize), 0.01 * 32768);
        EXPECT_NEAR(10 * std::log10(power / kSize / 32768 / 32768), -6.5, 0.8); // dB of full scale
        const auto spectrum = Spectrum(std::move(windowed));
        const auto perLine = static_cast<double>(rate) / kSize; // Hz
        const auto loudest = std::max_element(spectrum.begin() + 5, spectrum.end());
        EXPECT_NEAR(static_cast<double>(loudest - spectrum.begin()) * perLine, fundamental, perLine);
        const auto loudness = [&](double hertz) { // all that the window has spread
            const auto middle = spectrum.begin() + std::lround(hertz / perLine);
            return std::sqrt(std::inner_product(middle - 4, middle + 5, middle - 4, 0.0));
        };
        auto harmonic = std::floor(std::min(0.4 * static_cast<double>(rate), 16000.0) / fundamental);
        harmonic -= std::fmod(harmonic + 1, 2); // a square wave has the odd ones, of 1 / n
        EXPECT_NEAR(harmonic * loudness(harmonic * fundamental) / loudness(fundamental), 1, 0.03);
        for (std::size_t line = 0; line < spectrum.size(); ++line) {
            const auto hertz = static_cast<double>(line) * perLine;
            const auto nearest = std::max(1.0, std::round(hertz / fundamental)) * fundamental;
            if (hertz < std::max(20.0, kLines * perLine) || hertz > 16000) continue;
            if (std::abs(hertz - nearest) <= kLines * perLine) continue;
            EXPECT_LT(20 * std::log10(spectrum[line] / *loudest), -80) << hertz << " Hz beside " << fundamental;
        }
    }
}

} // namespace
