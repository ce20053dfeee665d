#include "relocate/Relocate.h"

namespace relocate {

std::variant<Relocated, Refusal> Relocate(std::string_view bytes, std::optional<std::int64_t> address)
{
    const auto parsed = preview::ParseSoundFile(bytes);
    if (const auto* const refusal = std::get_if<preview::Refusal>(&parsed)) return Refusal{*refusal};
    const auto& before = std::get<core::SoundFile>(parsed);
    if (!before.loadAddress) return Refusal{Refusal::IsForPokEmul{}};

    auto sound = before;
    sound.loadAddress = address.value_or(*before.loadAddress);
    const auto file = core::LaidOutFile(sound);
    if (const auto* const refusal = std::get_if<core::AddressRefusal>(&file))
        return Refusal{*refusal, core::SizeOf(sound)};
    return Relocated{.before = before, .address = *sound.loadAddress, .bytes = std::get<std::string>(file)};
}

} // namespace relocate
