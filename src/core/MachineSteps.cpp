#include "core/MachineSteps.h"

#include "core/LoadAddress.h"
#include "machine/Memory.h"

#include <sstream>

namespace core {
namespace {

constexpr std::int64_t kSlot0 = 0xC000; // from where NEW"S0:" counts

} // namespace

MachineSteps MachineStepsFor(std::int64_t address, std::int64_t Datengroesse, int baud)
{
    MachineSteps steps{.room = {},
                       .load = {"SETCOM\"COM1:\"," + std::to_string(baud) + ",8,N,1,N,N", "OUTSTAT\"COM1:\"",
                                "SNDSTAT\"COM1:\",28", "RCVSTAT\"COM1:\",28", "INIT\"COM1:\",8192", "BLOAD\"COM1:\""},
                       .call = "CALL &" + AddressText(address)};
    if (!machine::NeedsExtension(address)) {
        std::ostringstream room;
        room << "NEW\"S0:\",&" << std::hex << std::uppercase << address - kSlot0 + Datengroesse;
        steps.room = room.str();
    }
    return steps;
}

std::vector<std::string> StepsFor(std::int64_t address, std::int64_t Datengroesse, int baud)
{
    const auto steps = MachineStepsFor(address, Datengroesse, baud);
    std::vector<std::string> lines;
    if (steps.room) {
        lines.emplace_back("(in PRO mode)");
        lines.push_back(*steps.room);
    } else {
        lines.push_back("(in PRO mode reserve " + std::to_string(Datengroesse) + " bytes from " + AddressText(address) +
                        " up with NEW; how that is said with the 32 KB module isn't known here)");
    }
    lines.insert(lines.end(), steps.load.begin(), steps.load.end());
    lines.emplace_back("(when it has arrived, and if it doesn't start by itself)");
    lines.push_back(steps.call);
    return lines;
}

} // namespace core
