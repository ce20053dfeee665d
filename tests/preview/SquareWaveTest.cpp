// The Wave file, listened to: edges where the port has them, no tones that it hasn't.
#include "preview/SquareWave.h"
#include "support/KnownFile.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace preview;
using machine::Performance;

constexpr std::int64_t kClock = 3'580'000;

Performance Play(std::uint32_t sampleRate, const machine::RunBytes& runBytes)
{
    return machine::PerformanceOf(runBytes, {*machine::RateOfHertz(sampleRate), {}});
}

std::string WaveOf(const Performance& performance, std::int64_t outputRate)
{
    std::string file;
    WriteWave(performance, kClock, outputRate, [&](auto bytes) {
        EXPECT_LE(bytes.size(), 8192U);
        file += bytes;
    });
    return file;
}

std::vector<double> SamplesOf(const std::string& wave)
{
    std::vector<double> samples;
    for (std::size_t i = 44; i + 1 < wave.size(); i += 2)
        samples.push_back(static_cast<std::uint8_t>(wave[i]) + 256 * static_cast<std::int8_t>(wave[i + 1]));
    return samples;
}

TEST(SquareWave, IsAWaveFileThatLastsAsLongAsTheSound)
{
    // Byte 2 at 8000 Hz: 501 + 517 = 1018 cycles are 12.54 samples at 44100 Hz, and 13 samples are 26 bytes.
    const auto wave = WaveOf(Play(8000, {2}), 44100);
    EXPECT_EQ(wave.substr(0, 44), Bytes("52 49 46 46 3e 00 00 00 57 41 56 45 66 6d 74 20 10 00 00 00 01 00 01 00 44 ac "
                                        "00 00 88 58 01 00 02 00 10 00 64 61 74 61 1a 00 00 00"));
    EXPECT_EQ(WaveOf(Play(8000, {}), 44100).size(), 44U);
    const auto levels = SamplesOf(WaveOf(Play(6000, machine::RunBytes(500, 253)), 44100)); // 935 samples each
    EXPECT_EQ(levels.at(470), 16000);
    EXPECT_EQ(levels.at(levels.size() - 470), -16000); // nothing has drifted
}

TEST(SquareWave, ReadsTheSameSamplesFromWherever)
{
    machine::RunBytes runBytes;
    for (int i = 0; i < 300; ++i)
        runBytes.push_back(static_cast<machine::RunByte>(i % 7 == 0 ? machine::kStaysHigh : 2 + i % 40));
    const auto performance = Play(11025, runBytes);
    const auto whole = SamplesOf(WaveOf(performance, 44100));
    const SquareWave wave(performance, kClock, 44100);
    ASSERT_EQ(wave.SampleCount(), static_cast<std::int64_t>(whole.size()));
    for (const std::int64_t size : {1, 511, 1024, 5000})
        for (auto first = wave.SampleCount() - size; first >= 0; first -= 997) { // backwards, so that nothing helps
            std::vector<std::int16_t> samples(static_cast<std::size_t>(size));
            wave.Read(first, samples);
            ASSERT_TRUE(std::equal(samples.begin(), samples.end(), whole.begin() + first)) << size << " from " << first;
        }
}

TEST(SquareWave, CrossesZeroWhereThePortChanges)
{
    std::mt19937 random(1600);
    for (const std::uint32_t recording : {6000U, 8000U, 11025U})
        for (const std::int64_t rate : {22050, 44100, 192000}) {
            machine::RunBytes runBytes;
            for (int i = 0; i < 400; ++i)
                runBytes.push_back(static_cast<machine::RunByte>(
                    2 + random() % (i % 2 == 0 ? 9 : 253))); // 254 and so long periods too
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
            // Interpolated between two samples, a crossing is seen a fifth of a sample off at most.
            EXPECT_THAT(found, testing::Pointwise(testing::DoubleNear(0.2), expected)) << recording << " at " << rate;
        }
}

TEST(SquareWave, HasNoToneButTheHarmonics)
{
    constexpr std::size_t kSize = 4096;
    std::vector<std::complex<double>> turns;
    std::vector<double> window; // Blackman-Harris: a tone spreads over 4 lines on either side, the rest is below -92 dB
    for (std::size_t i = 0; i < kSize; ++i) {
        const auto turn = 2 * std::numbers::pi * static_cast<double>(i) / kSize;
        turns.push_back(std::polar(1.0, turn));
        window.push_back(0.35875 - 0.48829 * std::cos(turn) + 0.14128 * std::cos(2 * turn) -
                         0.01168 * std::cos(3 * turn));
    }
    // The fundamental in Hz is the clock by 2 N D + 114.
    for (const auto& [recording, byte, rate, fundamental] :
         std::vector<std::tuple<unsigned, machine::RunByte, std::int64_t, double>>{
             {11025, 2, 44100, 4441.6873}, // the highest, three harmonics below the half rate
             {11025, 2, 11200, 4441.6873}, // just below 0.4 of the rate, up to where the low-pass is flat
             {8000, 3, 192000, 2435.3741},
             {8000, 18, 8000, 433.9394},  // the lowest rate: all aliases are heard
             {11025, 7, 8300, 1411.6719}, // whose third harmonic is just above the half rate
         }) {
        const auto samples = SamplesOf(WaveOf(Play(recording, machine::RunBytes(3000, byte)), rate));
        const auto loudness = [&](std::size_t line) {
            std::complex<double> sum;
            for (std::size_t i = 0; i < kSize; ++i)
                sum += samples.at(100 + i) * window[i] * turns[i * line % kSize];
            return std::abs(sum);
        };
        const auto perLine = static_cast<double>(rate) / kSize; // Hz
        const auto ofTone = loudness(static_cast<std::size_t>(std::lround(fundamental / perLine)));
        // A square wave's fundamental is 4 / pi of its level; a tone between two lines shows up to 0.83 dB lower.
        EXPECT_NEAR(20 * std::log10(ofTone / (16000 * 2 / std::numbers::pi * 0.35875 * kSize)), -0.5, 0.6) << rate;
        for (std::size_t line = 4; line < kSize / 2; ++line) {
            const auto hertz = static_cast<double>(line) * perLine;
            const auto nearest = std::max(1.0, std::round(hertz / fundamental)) * fundamental;
            if (hertz < 20 || hertz > 16000 || std::abs(hertz - nearest) <= 4 * perLine) continue;
            EXPECT_LT(20 * std::log10(loudness(line) / ofTone), -80) << hertz << " Hz beside " << fundamental;
        }
    }
}

} // namespace
