#include "WaveAcceptance.h"

#include "WaveBytes.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using enum conversion::WaveRefusal;

struct WaveCase {
    const char* name;
    std::string file;
    std::optional<conversion::WaveRefusal> refusal;
};

class WaveFormat : public testing::TestWithParam<WaveCase> {};

TEST_P(WaveFormat, FirstFailingFieldDecides)
{
    const auto fields = conversion::ReadWaveFields(GetParam().file);
    const auto refusal = conversion::FormatRefusal(fields);
    EXPECT_EQ(refusal ? refusal : conversion::BitsRefusal(fields), GetParam().refusal);
}

INSTANTIATE_TEST_SUITE_P(Fields, WaveFormat,
                         testing::ValuesIn<WaveCase>({
                             {"Rate11025", WaveBytes(), {}},
                             {"Rate8000", WaveBytes().rate(8000), {}},
                             {"Rate6000", WaveBytes().rate(6000), {}},
                             {"EndsBehindBits", WaveBytes().length(36), {}}, // nothing else is looked at
                             {"EndsBeforeBits", WaveBytes().length(34), BitsPerSample},
                             {"Empty", "", FormatTag}, // past the end reads as 0
                             {"Extensible", WaveBytes().formatTag(0xFFFE), FormatTag},
                             {"TagInHighByte", WaveBytes().formatTag(0x0101), FormatTag},
                             {"StereoAt7000", WaveBytes().channels(2).rate(7000), Channels}, // asked before the rate
                             {"Rate7000", WaveBytes().rate(7000), SampleRate},
                             {"RateInHighBytes", WaveBytes().rate(11025 + (1U << 24U)), SampleRate},
                             {"Bits16", WaveBytes().bits(16), BitsPerSample},
                         }),
                         [](const auto& row) { return row.param.name; });

TEST(SampleBytes, StandBehindTheHeader)
{
    const std::string file = WaveBytes().samples("abc");
    EXPECT_EQ(conversion::SampleBytes(file, 47), "abc");
    EXPECT_EQ(conversion::SampleBytes(file.substr(0, 36), 36), ""); // accepted, though the header is cut off
}

} // namespace
