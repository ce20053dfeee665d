#include "core/MachineLines.h"

#include "core/LoadAddress.h"
#include "machine/Memory.h"

#include <sstream>

namespace core {
namespace {

constexpr std::int64_t kSlot0 = 0xC000; // from where NEW"S0:" counts

} // namespace

MachineLines MachineLinesFor(std::int64_t address, std::int64_t Datengroesse)
{
    MachineLines lines{.room = {},
                       .load = {"SETCOM\"COM1:\",9600,8,N,1,N,N", "OUTSTAT\"COM1:\"", "SNDSTAT\"COM1:\",28",
                                "RCVSTAT\"COM1:\",28", "INIT\"COM1:\",8192", "BLOAD\"COM1:\""},
                       .call = "CALL &" + AddressText(address)};
    if (!machine::NeedsExtension(address)) {
        std::ostringstream room;
        room << "NEW\"S0:\",&" << std::hex << std::uppercase << address - kSlot0 + Datengroesse;
        lines.room = room.str();
    }
    return lines;
}

} // namespace core
