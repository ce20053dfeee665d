// LoadAddress.h: whether a sound file can lie at the address that the user typed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace core {

enum class AddressRefusal {
    Length, // not four characters
    Range,  // below 80C5 or above EFFF
    Sum,    // address plus size is above EFFF
};

/// The reason why `Datengroesse` bytes can't lie at `address`, or none. The range is asked first.
[[nodiscard]] std::optional<AddressRefusal> RefusalOf(std::int64_t address, std::int64_t Datengroesse);

/// The address that four hexadecimal digits mean, or why `Datengroesse` bytes can't lie there. A character that is no
/// digit ends the number, which is below the range then.
[[nodiscard]] std::variant<std::int64_t, AddressRefusal> LoadAddressOf(std::u32string_view digits,
                                                                       std::int64_t Datengroesse);

/// Four hexadecimal digits.
[[nodiscard]] std::string AddressText(std::int64_t address);

/// Why `Datengroesse` bytes can't lie at the address that `digits` name, to be shown behind that name: " is ...".
[[nodiscard]] std::string ReasonOf(AddressRefusal refusal, std::int64_t Datengroesse);

} // namespace core
