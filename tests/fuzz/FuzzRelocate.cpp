// Any bytes: refused with a reason, or laid out for the address, and nothing else in them is another.
// Input: a byte, whose lowest bit says that an address is asked for; that address, low byte first; then the file.
#include "relocate/Relocate.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

void Require(bool holds)
{
    if (!holds) std::abort();
}

/// Offsets in the file: load address, start address and the player's operands, two bytes each.
constexpr std::array<std::size_t, 10> kAddresses{8, 11, 17, 21, 27, 35, 54, 60, 67, 99};

std::int64_t WordAt(std::string_view bytes, std::size_t offset)
{
    return static_cast<std::uint8_t>(bytes[offset]) + 0x100 * static_cast<std::uint8_t>(bytes[offset + 1]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 3) return 0;
    const std::string input(data, data + size);
    const auto address = (data[0] & 1) != 0 ? std::optional(WordAt(input, 1)) : std::nullopt;
    const auto file = input.substr(3);

    const auto made = relocate::Relocate(file, address);
    if (const auto* const refusal = std::get_if<relocate::Refusal>(&made)) {
        const auto* const noSoundFile = std::get_if<preview::Refusal>(&refusal->why);
        Require(noSoundFile == nullptr || noSoundFile->reason.size() > 20);
        return 0;
    }
    const auto& relocated = std::get<relocate::Relocated>(made);
    const auto& bytes = relocated.bytes;
    Require(bytes.size() == file.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto isOfAddress = [&](auto offset) { return i == offset || i == offset + 1; };
        Require(bytes[i] == file[i] || std::ranges::any_of(kAddresses, isOfAddress));
    }
    Require(relocated.address == address.value_or(WordAt(file, 8)) && WordAt(bytes, 8) == relocated.address);
    Require(relocated.address + static_cast<std::int64_t>(bytes.size()) - 2 <= 0xEFFF);
    Require((bytes == file) == relocated.WasRight());
    Require(std::get<relocate::Relocated>(relocate::Relocate(bytes, {})).WasRight());
    return 0;
}
