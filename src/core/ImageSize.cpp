#include "ImageSize.h"

namespace conversion {
namespace {

constexpr std::int64_t kWithoutExtension = 12090; // bytes from C0C5 to EFFF
constexpr std::int64_t kWithExtension = 28478;    // four more than the bytes from 80C5 to EFFF

} // namespace

SizeBand SizeBandOf(std::int64_t Datengroesse)
{
    if (Datengroesse > kWithoutExtension && Datengroesse < kWithExtension) return SizeBand::NeedsExtension;
    if (Datengroesse > kWithExtension) return SizeBand::TooLarge;
    if (Datengroesse < kWithoutExtension) return SizeBand::Size;
    return SizeBand::Silent;
}

} // namespace conversion
