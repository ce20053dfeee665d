// What a size means for the user, and where a file of that size can lie.
#include "core/ImageSize.h"
#include "core/LoadAddress.h"

#include <gtest/gtest.h>

#include <tuple>
#include <utility>
#include <vector>

namespace {

TEST(ImageSize, HasItsBandWithTheLimitsThemselvesSilent)
{
    using enum core::SizeBand;
    for (const auto& [bytes, band] : std::vector<std::pair<std::int64_t, core::SizeBand>>{
             {1, Size},
             {12089, Size},
             {12090, Silent},
             {12091, NeedsExtension},
             {28477, NeedsExtension},
             {28478, Silent},
             {28479, TooLarge},
         })
        EXPECT_EQ(core::SizeBandOf(bytes), band) << bytes;
}

TEST(LoadAddress, LeavesRoomForTheFileBelowTheHighestAddress)
{
    using enum core::AddressRefusal;
    for (const auto& [digits, bytes, found] :
         std::vector<std::tuple<std::u32string_view, std::int64_t, std::variant<std::int64_t, core::AddressRefusal>>>{
             {U"80C4", 152, Range},
             {U"80c5", 152, 0x80C5},
             {U"EF67", 152, 0xEF67},
             {U"EF68", 152, Sum},
             {U"EFFF", 152, Sum}, // in the range itself
             {U"F000", 152, Range},
             {U"C0C5", 12090, 0xC0C5},
             {U"C0C5", 12091, Sum},
             {U"80C5", 28474, 0x80C5},
             {U"80C5", 28475, Sum},          // no address is low enough
             {U"80G5", 152, Range},          // reads as 80
             {U"80C\U0001F600", 152, Range}, // four characters in seven bytes
             {U"", 152, Length},
             {U"080C5", 152, Length},
         })
        EXPECT_EQ(core::LoadAddressOf(digits, bytes), found) << bytes;
}

} // namespace
