// PC1600.h: what the commands say of a file for the PC-1600, one "name: value" a line.
#pragma once

#include <cstdint>
#include <string>

namespace command {

/// Whether `Datengroesse` bytes at `address` need the 32 KB extension, and for which of the two.
[[nodiscard]] std::string ExtensionText(std::int64_t address, std::int64_t Datengroesse);

/// Where such a file lies, what it needs, and the lines that are typed on the machine for it.
[[nodiscard]] std::string OnThePC1600(std::int64_t address, std::int64_t Datengroesse);

} // namespace command
