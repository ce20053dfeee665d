#include "core/LoadAddress.h"

#include "core/TextLibrary.h"
#include "machine/Memory.h"

#include <string>

namespace core {

std::optional<AddressRefusal> RefusalOf(std::int64_t address, std::int64_t Datengroesse)
{
    if (address < machine::kLowestAddress || address > machine::kHighestAddress) return AddressRefusal::Range;
    if (address + Datengroesse > machine::kHighestAddress) return AddressRefusal::Sum;
    return std::nullopt;
}

std::variant<std::int64_t, AddressRefusal> LoadAddressOf(std::u32string_view digits, std::int64_t Datengroesse)
{
    constexpr std::size_t kDigits = 4;
    if (digits.size() != kDigits) return AddressRefusal::Length;
    const auto address = static_cast<std::int64_t>(text::Val(U"&H" + std::u32string(digits)));
    if (const auto refusal = RefusalOf(address, Datengroesse)) return *refusal;
    return address;
}

} // namespace core
