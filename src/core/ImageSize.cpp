#include "core/ImageSize.h"

#include "machine/Memory.h"

namespace core {
namespace {

constexpr auto kWithoutExtension = machine::kLargestWithoutExtension;
constexpr auto kWithExtension = machine::kLargestSize + 4; // the last four are promised room that no address leaves

} // namespace

SizeBand SizeBandOf(std::int64_t Datengroesse)
{
    if (Datengroesse > kWithoutExtension && Datengroesse < kWithExtension) return SizeBand::NeedsExtension;
    if (Datengroesse > kWithExtension) return SizeBand::TooLarge;
    if (Datengroesse < kWithoutExtension) return SizeBand::Size;
    return SizeBand::Silent;
}

} // namespace core
