#include "core/MachineSteps.h"

#include "machine/Memory.h"

#include <cassert>
#include <iomanip>
#include <sstream>

namespace core {
namespace {

constexpr std::size_t kProgramArea = 0xC000; // without the 32 KB module; NEW counts the reserved room from here

std::string Hex(std::size_t number)
{
    std::ostringstream text;
    text << std::hex << std::uppercase << number;
    return text.str();
}

/// The command for 80C5 isn't in the published references; they give the one without the module.
std::string RoomFor(std::uint16_t loadAddress, std::size_t size)
{
    if (loadAddress < machine::kLowestWithoutExtension)
        return "(in PRO mode reserve " + std::to_string(size) + " bytes from " + Hex(loadAddress) +
               " up with NEW; how that is said with the 32 KB module isn't known here)";
    return "NEW\"S0:\",&" + Hex(loadAddress - kProgramArea + size);
}

} // namespace

std::vector<std::string> StepsFor(std::uint16_t loadAddress, std::size_t size, int baud)
{
    assert(loadAddress >= machine::kLowestAddress);
    std::vector<std::string> steps;
    if (loadAddress >= machine::kLowestWithoutExtension) steps.emplace_back("(in PRO mode)");
    steps.push_back(RoomFor(loadAddress, size));
    steps.push_back("SETCOM\"COM1:\"," + std::to_string(baud) + ",8,N,1,N,N");
    for (const auto* const line : {R"(OUTSTAT"COM1:")", R"(SNDSTAT"COM1:",28)", R"(RCVSTAT"COM1:",28)",
                                   R"(INIT"COM1:",8192)", R"(BLOAD"COM1:")"})
        steps.emplace_back(line);
    steps.emplace_back("(when it has arrived, and if it doesn't start by itself)");
    steps.push_back("CALL &" + Hex(loadAddress));
    return steps;
}

} // namespace core
