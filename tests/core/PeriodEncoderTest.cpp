#include "core/PeriodEncoder.h"
#include "support/WaveBytes.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

const std::string kHigh = "\xC8"; // a sample above the midline
const std::string kLow = "2";     // and one below

/// One period for each length, then two samples that nobody looks at.
std::string Periods(const std::vector<std::size_t>& lengths)
{
    std::string samples;
    for (const auto length : lengths)
        samples += Times(length - 1, kHigh) + kLow;
    return samples + kLow + kLow;
}

core::EncodedPeriods Encoded(const std::string& samples)
{
    core::BackgroundTask yield([] {});
    return core::EncodePeriods(samples, yield);
}

TEST(EncodePeriods, WritesTheRunBytesOfEachPeriod)
{
    const std::string midline(5, '\x80');
    for (const auto& [samples, tokens] : std::vector<std::pair<std::string, std::string>>{
             {"", "&HFF"},
             {kHigh, "&HFF"},
             {kHigh + "22", "&HFF"}, // the last two are not looked at
             {kHigh + "222", "&H02&HFF"},
             {Times(999, kHigh), "&HFF"},
             {Times(999, kLow), "&HFF"},
             {kHigh + midline + "222", "&H07&HFF"}, // the midline counts, but ends nothing
             {midline + "222", "&HFF"},             // and arms nothing
             {"\x81\x7F\x7F\x7F", "&H02&HFF"},
             {"222" + kHigh + kHigh + "222", "&H06&HFF"},   // what lies ahead of the first rise counts
             {kHigh + "2" + Times(50, kHigh), "&H02&HFF"},  // an unfinished period is lost
             {Periods({15, 16, 253}), "&H0F&H10&HFD&HFF"},  //
             {Periods({254}), "&Hfe&H00&HFF"},              // entered at 254
             {Periods({255, 507}), "&Hfe&H01&Hfe&HFD&HFF"}, //
             {Periods({508}), "&Hfe&HFE&HFF"},              // left below 255
             {Periods({509, 762}), "&Hfe&Hfe&H01&Hfe&Hfe&HFE&HFF"},
         })
        EXPECT_EQ(core::TokensOf(Encoded(samples)), tokens);
}

TEST(EncodePeriods, ListsSixteenValuesALineAndSeventeenBehindAContinuation)
{
    const auto twos = [](std::size_t count, std::vector<std::size_t> more) {
        more.insert(more.begin(), count, 2);
        return core::ListingOf(Encoded(Periods(more)));
    };
    EXPECT_EQ(core::ListingOf({}), "\tDEFB 255\r");
    EXPECT_EQ(twos(15, {}), "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,255\r");
    EXPECT_EQ(twos(16, {}), "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,2\r\tDEFB 255\r");
    EXPECT_EQ(twos(14, {300, 3}), "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,254,46\r\tDEFB 3,255\r");
    EXPECT_EQ(twos(15, {300, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 4}),
              "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,254\r"
              "\tDEFB 46,3,3,3,3,3,3,3,3,3,3,3,3,3,3,3,3\r\tDEFB 4,255\r");
}

} // namespace
