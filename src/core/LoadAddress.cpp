#include "LoadAddress.h"

namespace output {
namespace {

constexpr double kLowest = 32965.0;  // 80C5
constexpr double kHighest = 61439.0; // EFFF

} // namespace

std::optional<AddressRefusal> RefusalOf(double address, std::int64_t Datengroesse)
{
    if (address < kLowest || address > kHighest) return AddressRefusal::Range;
    if (address + static_cast<double>(Datengroesse) > kHighest) return AddressRefusal::Sum;
    return std::nullopt;
}

} // namespace output
