// Relocate.h: a saved sound file whose player is laid out for the address that it is loaded at. Nothing changes but the
// addresses: load and start address in the file header, and the player's operands.
#pragma once

#include "core/LoadAddress.h"
#include "preview/SoundFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace relocate {

/// The file as it was, and what becomes of it.
struct Relocated {
    core::SoundFile before;
    std::int64_t address; // for which the player is laid out now, and at which it is loaded
    std::string bytes;    // of the file; those that were there where it was laid out right

    [[nodiscard]] bool WasRight() const { return before.loadAddress == address && before.playerAddress == address; }
};

/// Why it can't be done.
struct Refusal {
    struct IsForPokEmul {}; // it has no address

    std::variant<preview::Refusal, IsForPokEmul, core::AddressRefusal> why;
    std::int64_t size = 0; // of the file as the address rule counts, where that refuses it
};

/// `bytes` laid out for `address`; for none, for the address in its header.
[[nodiscard]] std::variant<Relocated, Refusal> Relocate(std::string_view bytes, std::optional<std::int64_t> address);

} // namespace relocate
