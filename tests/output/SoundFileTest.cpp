// The pure functions between the run bytes and the file: whole files as bytes, sizes and addresses.
#include "HexTokenText.h"
#include "ImageSize.h"
#include "KnownFile.h"
#include "LoadAddress.h"
#include "PeriodEncoder.h"
#include "SoundFileHeader.h"
#include "SoundFileImage.h"
#include "WaveAcceptance.h"
#include "WaveBytes.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace {

using conversion::SizeBand;
using output::AddressRefusal;

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

TEST(SoundFile, SizeFallsIntoItsBand)
{
    for (const auto& [bytes, band] : std::vector<std::pair<std::int64_t, SizeBand>>{
             {1, SizeBand::Size},
             {12089, SizeBand::Size},
             {12090, SizeBand::Silent},
             {12091, SizeBand::NeedsExtension},
             {28477, SizeBand::NeedsExtension},
             {28478, SizeBand::Silent},
             {28479, SizeBand::TooLarge},
         })
        EXPECT_EQ(conversion::SizeBandOf(bytes), band) << bytes;
}

TEST(SoundFile, AddressIsRefusedOutsideTheRangeOrWithoutRoom)
{
    for (const auto& [address, bytes, refusal] :
         std::vector<std::tuple<double, std::int64_t, std::optional<AddressRefusal>>>{
             {0x80C4, 1, AddressRefusal::Range},
             {0x80C5, 28474, std::nullopt}, // EFFF is reached
             {0x80C5, 28475, AddressRefusal::Sum},
             {0xEFFE, 1, std::nullopt},
             {0xEFFF, 1, AddressRefusal::Sum}, // in the range, but no file is so short
             {0xF000, 1, AddressRefusal::Range},
         })
        EXPECT_EQ(output::RefusalOf(address, bytes), refusal) << address << " " << bytes;
}

} // namespace
