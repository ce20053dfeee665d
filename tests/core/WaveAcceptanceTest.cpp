#include "core/WaveAcceptance.h"

#include "support/WaveBytes.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using core::WaveRefusal;

TEST(WaveAcceptance, JudgesTheFourFieldsByAllTheirBytesAndInTheirOrder)
{
    const std::optional<WaveRefusal> accepted;
    for (const auto& [file, refusal] : std::vector<std::pair<std::string, std::optional<WaveRefusal>>>{
             {WaveBytes(), accepted},
             {WaveBytes().rate(6000), accepted},
             {WaveBytes().rate(8000).length(36), accepted}, // nothing else is looked at
             {"", WaveRefusal::FormatTag},                  // past the end reads as 0
             {WaveBytes().formatTag(0x0101), WaveRefusal::FormatTag},
             {WaveBytes().formatTag(3).channels(2), WaveRefusal::FormatTag},
             {WaveBytes().channels(2).rate(7000), WaveRefusal::Channels},
             {WaveBytes().channels(0x0101), WaveRefusal::Channels},
             {WaveBytes().rate(7000).bits(16), WaveRefusal::SampleRate}, // although the message names a range
             {WaveBytes().rate(11025 + (1U << 24U)), WaveRefusal::SampleRate},
             {WaveBytes().bits(0x0108), WaveRefusal::BitsPerSample},
             {WaveBytes().length(34), WaveRefusal::BitsPerSample},
         })
        EXPECT_EQ(core::RefusalOf(core::ReadWaveFields(file)), refusal);
}

TEST(WaveAcceptance, TitleHasOneByteForEachOf25Characters)
{
    core::BackgroundTask yield([] {});
    const auto tokens = [&](std::u32string_view name) { return core::NameTokens(name, yield); };
    EXPECT_EQ(tokens(U"\t\u00E4\u00FF"), "&H09&HE4&HFF" + Times(22, "&H00"));
    EXPECT_EQ(tokens(U"\u0100\U0001F600"), "&H3F&H3F" + Times(23, "&H00")); // no byte can hold them: a question mark
    EXPECT_EQ(tokens(std::u32string(24, 'a') + U"bc").substr(96), "&H62");
}

} // namespace
