#include "command/PC1600.h"

#include "core/LoadAddress.h"
#include "core/MachineSteps.h"
#include "machine/Memory.h"

namespace command {

std::string ExtensionText(std::int64_t address, std::int64_t Datengroesse)
{
    if (!machine::NeedsExtension(address)) return "not needed";
    if (Datengroesse > machine::kLargestWithoutExtension) return "needed for the size";
    return "needed for the address " + core::AddressText(address) + ", not for the size";
}

std::string OnThePC1600(std::int64_t address, std::int64_t Datengroesse)
{
    const auto steps = core::MachineStepsFor(address, Datengroesse);
    auto text = "load address: " + core::AddressText(address) + "\nsize: " + std::to_string(Datengroesse) +
                "\n32 KB extension: " + ExtensionText(address, Datengroesse) + "\nroom: " +
                steps.room.value_or("from " + core::AddressText(address) +
                                    " up; which command that is with the extension isn't known here") +
                '\n';
    for (const auto& line : steps.load)
        text += "load: " + line + '\n';
    return text + "call: " + steps.call + '\n';
}

} // namespace command
