// The pure functions between the recording and the file: whole files as bytes.
#include "HexTokenText.h"
#include "KnownFile.h"
#include "PeriodEncoder.h"
#include "SoundFileHeader.h"
#include "SoundFileImage.h"
#include "WaveAcceptance.h"
#include "WaveBytes.h"

#include <gtest/gtest.h>

namespace {

TEST(SoundFile, IsKnownByteForByte)
{
    conversion::Yield yield([] {});
    const auto runBytes = conversion::EncodePeriods(ToneOf160(), nullptr, yield);
    const auto name = conversion::NameTokens(U"tone.wav", yield);
    const auto named = [&](std::string_view header) {
        return conversion::WithRateAndTitle(header, conversion::RateToken(11025), name);
    };
    const auto pokEmul = output::SoundFileImage(named(conversion::TemplatePokeMul()), runBytes, yield);
    EXPECT_EQ(pokEmul, kPlayer + kRunBytes);

    const auto length = conversion::WordTokensOf(0x1234);
    const auto address = conversion::WordTokensOf(0xC0FE);
    auto header = conversion::WithProgramLength(named(conversion::TemplatePC1600()), length->low, length->high);
    header = conversion::WithAddress(header, address->low, address->high);
    const auto pc1600 = output::SoundFileImage(header, runBytes, yield);
    EXPECT_EQ(pc1600, Bytes("ff 10 00 00 10 34 12 00 fe c0 00 fe c0 00 00 0f") + kPlayer + kRunBytes);
    EXPECT_EQ(output::SoundFileImage("&Hfe", "&H0a&HfF", yield), Bytes("fe 0a ff 00 00")); // digits of either case
    EXPECT_FALSE(conversion::WordTokensOf(0x10000));
}

} // namespace
