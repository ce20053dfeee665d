#include "serial/Ports.h"

#include <windows.h>

#include <array>

namespace serial {

std::vector<Port> Ports()
{
    std::vector<Port> ports;
    HKEY key = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, R"(HARDWARE\DEVICEMAP\SERIALCOMM)", 0, KEY_READ, &key) != ERROR_SUCCESS)
        return ports; // it is only there where there is a port
    std::array<char, 256> device{};
    std::array<BYTE, 256> name{};
    for (DWORD i = 0;; ++i) {
        auto deviceLength = static_cast<DWORD>(device.size());
        auto nameLength = static_cast<DWORD>(name.size() - 1); // its own zero may be missing
        DWORD type = 0;
        name.fill(0);
        if (RegEnumValueA(key, i, device.data(), &deviceLength, nullptr, &type, name.data(), &nameLength) !=
            ERROR_SUCCESS)
            break;
        if (type == REG_SZ) ports.push_back({reinterpret_cast<const char*>(name.data()), device.data()});
    }
    RegCloseKey(key);
    return ports;
}

} // namespace serial
