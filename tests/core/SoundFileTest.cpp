// The pure functions between the recording and the file: whole files as bytes.
#include "core/HexTokenText.h"
#include "core/PeriodEncoder.h"
#include "core/SoundFileHeader.h"
#include "core/SoundFileImage.h"
#include "core/WaveAcceptance.h"
#include "support/KnownFile.h"
#include "support/WaveBytes.h"

#include <gtest/gtest.h>

namespace {

TEST(SoundFile, IsKnownByteForByte)
{
    core::BackgroundTask yield([] {});
    const auto runBytes = core::EncodePeriods(ToneOf160(), nullptr, yield);
    const auto name = core::NameTokens(U"tone.wav", yield);
    const auto named = [&](const core::HeaderLayout& layout) {
        return core::WithRateAndTitle(layout.tokens, layout, core::RateToken(11025), name);
    };
    const auto pokEmul = core::SoundFileImage(named(core::kLayoutPokeMul), runBytes, yield);
    EXPECT_EQ(pokEmul, kPlayer + kRunBytes);

    const auto length = core::WordTokensOf(0x1234);
    const auto address = core::WordTokensOf(0xC0FE);
    auto header = core::WithProgramLength(named(core::kLayoutPC1600), length->low, length->high);
    header = core::WithAddress(header, address->low, address->high);
    const auto pc1600 = core::SoundFileImage(header, runBytes, yield);
    EXPECT_EQ(pc1600, Bytes("ff 10 00 00 10 34 12 00 fe c0 00 fe c0 00 00 0f") + kPlayer + kRunBytes);
    EXPECT_EQ(core::SoundFileImage("&Hfe", "&H0a&HfF", yield), Bytes("fe 0a ff 00 00")); // digits of either case
    EXPECT_FALSE(core::WordTokensOf(0x10000));
}

} // namespace
