#include "WaveAcceptance.h"

#include "WaveBytes.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using conversion::WaveRefusal;
using enum conversion::WaveRefusal;

struct WaveCase {
    const char* name;
    std::string file;
    std::optional<WaveRefusal> refusal;
};

class WaveFormat : public testing::TestWithParam<WaveCase> {};

TEST_P(WaveFormat, FirstFailingFieldDecides)
{
    const auto fields = conversion::ReadWaveFields(GetParam().file);
    const auto refusal = conversion::FormatRefusal(fields);
    EXPECT_EQ(refusal ? refusal : conversion::BitsRefusal(fields), GetParam().refusal);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, WaveFormat,
    testing::ValuesIn<WaveCase>({
        {"Rate11025", WaveBytes().rate(11025), {}},
        {"Rate8000", WaveBytes().rate(8000), {}},
        {"Rate6000", WaveBytes().rate(6000), {}},
        {"Empty", "", FormatTag}, // past the end reads as 0
        {"EndsBeforeTag", WaveBytes().length(20), FormatTag},
        {"EndsBeforeBits", WaveBytes().length(34), BitsPerSample},
        {"Extensible", WaveBytes().formatTag(0xFFFE), FormatTag},
        {"TagInHighByte", WaveBytes().formatTag(0x0101), FormatTag},
        {"StereoAt7000", WaveBytes().channels(2).rate(7000), Channels}, // channels are asked before the rate
        {"Rate7000", WaveBytes().rate(7000), SampleRate},               // within the range that the message names
        {"Rate22050", WaveBytes().rate(22050), SampleRate},
        {"RateHighBytes", WaveBytes().rate(11025 + (1U << 24U)), SampleRate},
        {"Bits16", WaveBytes().bits(16), BitsPerSample},
    }),
    [](const auto& row) { return row.param.name; });

std::string NameTokens(std::u32string_view name)
{
    conversion::Yield yield([] {});
    return conversion::NameTokens(name, yield);
}

std::string Repeated(int times, const std::string& token)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += token;
    return all;
}

TEST(NameTokens, AreAlways25)
{
    EXPECT_EQ(NameTokens(U"tone.wav"), "&H74&H6F&H6E&H65&H2E&H77&H61&H76" + Repeated(17, "&H00"));
    EXPECT_EQ(NameTokens(std::u32string(25, U'a')), Repeated(25, "&H61"));
    EXPECT_EQ(NameTokens(std::u32string(26, U'a')), Repeated(25, "&H61")); // the rest is lost
    EXPECT_EQ(NameTokens(U"\t\u00E4\u00FF\u0100\U0001F600"), "&H09&HE4&HFF&H3F&H3F" + Repeated(20, "&H00"));
}

TEST(SampleBytes, StandBehindTheHeader)
{
    const std::string file = WaveBytes().samples("abc");
    EXPECT_EQ(conversion::SampleBytes(file, 47), "abc");
    EXPECT_EQ(conversion::SampleBytes(file.substr(0, 44), 44), "");
    EXPECT_EQ(conversion::SampleBytes(file.substr(0, 36), 36), ""); // accepted, though the data header is cut off
}

} // namespace
