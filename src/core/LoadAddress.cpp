#include "core/LoadAddress.h"

#include "machine/Memory.h"

namespace core {

std::optional<AddressRefusal> RefusalOf(double address, std::int64_t Datengroesse)
{
    constexpr auto kHighest = static_cast<double>(machine::kHighestAddress);
    if (address < machine::kLowestAddress || address > kHighest) return AddressRefusal::Range;
    if (address + static_cast<double>(Datengroesse) > kHighest) return AddressRefusal::Sum;
    return std::nullopt;
}

} // namespace core
