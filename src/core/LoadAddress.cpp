#include "core/LoadAddress.h"

#include "core/TextLibrary.h"
#include "machine/Memory.h"

#include <iomanip>
#include <sstream>

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

std::string AddressText(std::int64_t address)
{
    std::ostringstream text;
    text << std::hex << std::uppercase << std::setfill('0') << std::setw(4) << address;
    return text.str();
}

std::string ReasonOf(AddressRefusal refusal, std::int64_t Datengroesse)
{
    switch (refusal) {
    case AddressRefusal::Length: return " isn't four hexadecimal digits";
    case AddressRefusal::Range: return " isn't between 80C5 and EFFF";
    case AddressRefusal::Sum: break;
    }
    return " is too high: with the size, " + std::to_string(Datengroesse) + ", it is above EFFF";
}

} // namespace core
