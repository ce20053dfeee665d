#include "HexTokenText.h"
#include "TextLibrary.h"

#include <gtest/gtest.h>

TEST(TextLibrary, ValStopsAtTheFirstCharacterThatIsNoDigit)
{
    EXPECT_EQ(text::Val("&Hff"), 255);
    EXPECT_EQ(text::Val("&HFF"), 255);
    EXPECT_EQ(text::Val("&h0B"), 11);
    EXPECT_EQ(text::Val(U"&H80G5"), 0x80);
    EXPECT_EQ(text::Val(U"&H 0C5"), 0);
    EXPECT_EQ(text::Val("&H"), 0);
    EXPECT_EQ(text::Val(""), 0);
}

TEST(TextLibrary, StrHasAFractionOnlyWhereThereIsOne)
{
    EXPECT_EQ(text::Str(500000), "500000"); // and no exponent
    EXPECT_EQ(text::Str(11.025), "11.025");
    EXPECT_EQ(text::Str(6), "6");
}

TEST(HexTokenText, TokensHaveTwoUpperCaseDigits)
{
    EXPECT_EQ(conversion::TokenOf(0), "&H00");
    EXPECT_EQ(conversion::TokenOf(10), "&H0A");
    EXPECT_EQ(conversion::TokenOf(16), "&H10");
    EXPECT_EQ(conversion::TokenOf(255), "&HFF");
}

TEST(HexTokenText, ReadsEitherCaseAndZeroPastTheEnd)
{
    EXPECT_EQ(conversion::ByteOfToken("&Hfe&HFE", 0), 254);
    EXPECT_EQ(conversion::ByteOfToken("&Hfe&HFE", 1), 254);
    EXPECT_EQ(conversion::ByteOfToken("&Hfe&HFE", 2), 0);
    EXPECT_EQ(conversion::ByteOfToken("&Hfe&HFE", 3), 0);
}

TEST(HexTokenText, SplicesInPlace)
{
    EXPECT_EQ(conversion::Splice("&H00&H01&H02&H03", 1, "&HAA&HBB"), "&H00&HAA&HBB&H03");
    EXPECT_EQ(conversion::Splice("&H00&H01", 1, "&HAA"), "&H00&HAA");
}
