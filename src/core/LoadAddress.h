// LoadAddress.h: whether a sound file can lie at the address that the user typed.
#pragma once

#include <cstdint>
#include <optional>

namespace core {

enum class AddressRefusal {
    Range, // below 80C5 or above EFFF
    Sum,   // address plus size is above EFFF
};

/// The reason why `Datengroesse` bytes can't lie at `address`, or none. The range is asked first.
[[nodiscard]] std::optional<AddressRefusal> RefusalOf(double address, std::int64_t Datengroesse);

} // namespace core
