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
    for (const auto& [address, bytes, refusal] :
         std::vector<std::tuple<int, std::int64_t, std::optional<core::AddressRefusal>>>{
             {0x80C4, 152, Range},
             {0x80C5, 152, {}},
             {0xEF67, 152, {}},
             {0xEF68, 152, Sum},
             {0xEFFF, 152, Sum}, // in the range itself
             {0xF000, 152, Range},
             {0xC0C5, 12090, {}},
             {0xC0C5, 12091, Sum},
             {0x80C5, 28474, {}},
             {0x80C5, 28475, Sum}, // no address is low enough
         })
        EXPECT_EQ(core::RefusalOf(address, bytes), refusal) << std::hex << address << std::dec << " and " << bytes;
}

} // namespace
