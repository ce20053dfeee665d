#include "PeriodEncoder.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace {

std::string Samples(std::initializer_list<std::pair<int, int>> runs) // value, how often
{
    std::string samples;
    for (const auto& [value, count] : runs)
        samples += std::string(static_cast<std::size_t>(count), static_cast<char>(value));
    return samples;
}

/// One period for each length, then two samples that nobody looks at.
std::string Periods(std::initializer_list<int> lengths)
{
    std::string samples;
    for (const int length : lengths)
        samples += Samples({{200, length - 1}, {50, 1}});
    return samples + Samples({{50, 2}});
}

struct Encoded {
    std::string BinZeile = "left over";
    std::int64_t Datengroesse = 0;
    std::string listing;
};

Encoded Encode(const std::string& samples)
{
    Encoded encoded;
    conversion::Yield yield([] {});
    conversion::EncodePeriods(
        samples, encoded.BinZeile, encoded.Datengroesse,
        [&](std::string_view line) { (encoded.listing += line) += '\r'; }, yield);
    EXPECT_EQ(encoded.BinZeile.size(), 4 * static_cast<std::size_t>(encoded.Datengroesse));
    return encoded;
}

struct SignalCase {
    const char* name;
    std::string samples;
    std::string tokens;
};

class Signal : public testing::TestWithParam<SignalCase> {};

TEST_P(Signal, BecomesRunBytes)
{
    EXPECT_EQ(Encode(GetParam().samples).BinZeile, GetParam().tokens);
}

INSTANTIATE_TEST_SUITE_P(Periods, Signal,
                         testing::ValuesIn<SignalCase>({
                             {"Empty", "", "&HFF"},
                             {"OneSample", Samples({{200, 1}}), "&HFF"},
                             {"LastTwoAreNotLookedAt", Samples({{200, 1}, {50, 2}}), "&HFF"},
                             {"FirstThatIsLookedAt", Samples({{200, 1}, {50, 3}}), "&H02&HFF"},
                             {"AllHigh", Samples({{200, 999}}), "&HFF"},
                             {"AllLow", Samples({{50, 999}}), "&HFF"},
                             {"AllOnMidline", Samples({{128, 999}}), "&HFF"},
                             {"MidlineCountsButDoesNotEnd", Samples({{200, 1}, {128, 2}, {50, 3}}), "&H04&HFF"},
                             {"MidlineDoesNotArm", Samples({{128, 5}, {50, 3}}), "&HFF"},
                             {"JustAboveAndBelow", Samples({{129, 1}, {127, 3}}), "&H02&HFF"},
                             {"LeadingLowCounts", Samples({{50, 3}, {200, 2}, {50, 3}}), "&H06&HFF"},
                             {"UnfinishedPeriodIsLost", Samples({{200, 1}, {50, 1}, {200, 50}}), "&H02&HFF"},
                             {"Two", Periods({2}), "&H02&HFF"},
                             {"Fifteen", Periods({15, 16}), "&H0F&H10&HFF"},
                             {"LongestPlain", Periods({253}), "&HFD&HFF"},
                             {"Exactly254", Periods({254}), "&Hfe&H00&HFF"},
                             {"Rest1", Periods({255}), "&Hfe&H01&HFF"},
                             {"Rest253", Periods({507}), "&Hfe&HFD&HFF"},
                             {"Rest254EndsThePeriod", Periods({508}), "&Hfe&HFE&HFF"},
                             {"TwoContinuations", Periods({509}), "&Hfe&Hfe&H01&HFF"},
                             {"Twice254AndRest254", Periods({762}), "&Hfe&Hfe&HFE&HFF"},
                             {"ThreeContinuations", Periods({763}), "&Hfe&Hfe&Hfe&H01&HFF"},
                         }),
                         [](const auto& row) { return row.param.name; });

TEST(Listing, HoldsEveryValueAndNoDanglingComma)
{
    EXPECT_EQ(Encode("").listing, "\tDEFB 255\r");
    EXPECT_EQ(Encode(Periods({254, 3})).listing, "\tDEFB 254,0,3,255\r");
    EXPECT_EQ(Encode(Periods({2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2})).listing, // the end mark completes the line
              "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,255\r");
    EXPECT_EQ(Encode(Periods({2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2})).listing,
              "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,2\r\tDEFB 255\r");
}

TEST(Listing, LineAfterAContinuationTakesSeventeenValues)
{
    EXPECT_EQ(Encode(Periods({2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 300, 3})).listing, // from column 15: 16 values
              "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,254,46\r\tDEFB 3,255\r");
    EXPECT_EQ(Encode(Periods({2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 300, 3,
                              3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 3, 4}))
                  .listing,
              "\tDEFB 2,2,2,2,2,2,2,2,2,2,2,2,2,2,2,254\r"
              "\tDEFB 46,3,3,3,3,3,3,3,3,3,3,3,3,3,3,3,3\r"
              "\tDEFB 4,255\r");
}

} // namespace
