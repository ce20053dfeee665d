#include "core/PeriodEncoder.h"
#include "prepare/PeriodChoice.h"
#include "prepare/RecordingBytes.h"
#include "prepare/SpeechTarget.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <numbers>
#include <random>

namespace {

using namespace prepare;

/// The run bytes that the window would make of `recording`, without the end mark.
std::string Encoded(const std::string& recording)
{
    core::BackgroundTask yield([] {});
    const auto tokens = core::EncodePeriods(std::string_view(recording).substr(44), nullptr, yield);
    std::string bytes;
    for (std::size_t i = 2; i < tokens.size(); i += 4) {
        int byte = 0;
        std::from_chars(&tokens[i], &tokens[i] + 2, byte, 16);
        bytes += static_cast<char>(byte);
    }
    bytes.pop_back();
    return bytes;
}

const machine::SampleRate& Rate(std::uint32_t hertz)
{
    return *machine::RateOfHertz(hertz);
}

TEST(RecordingBytes, LeadToEveryListThatARecordingCanLeadTo)
{
    std::mt19937 random(1600);
    for (int list = 0; list < 2000; ++list) {
        std::string bytes;
        for (auto periods = random() % 40; periods > 0; --periods) { // each as the encoder would write it
            auto length = random() % 2 == 0 ? 2 + random() % 252 : 2 + random() % 1400;
            if (length >= 254) {
                for (bytes += '\xFE', length -= 254; length > 254; length -= 254)
                    bytes += '\xFE';
            }
            bytes += static_cast<char>(length);
        }
        const auto recording = RecordingBytes(bytes, Rate(8000));
        ASSERT_EQ(Encoded(recording), bytes);
        ASSERT_EQ(recording.size(), 44 + RecordingSamples(bytes));
    }
}

TEST(RecordingBytes, AreAWaveFileWithAHeaderOf44Bytes)
{
    const std::string header("RIFF\x2b\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x11\x2b\0\0\x11\x2b\0\0\1\0\x08\0data\x07\0\0\0",
                             44);
    EXPECT_EQ(RecordingBytes("\x05", Rate(11025)), header + "@\xC0\xC0\xC0@@@");
}

} // namespace
