#include "serial/Ports.h"

#include <libserialport.h>

#include <memory>
#include <stdexcept>

namespace serial {

std::vector<Port> Ports()
{
    sp_port** list = nullptr;
    if (sp_list_ports(&list) != SP_OK) throw std::runtime_error("The serial ports can't be listed.");
    const std::unique_ptr<sp_port*, decltype(&sp_free_port_list)> owned(list, sp_free_port_list);
    std::vector<Port> ports;
    for (auto* const* port = list; *port != nullptr; ++port) {
        const auto* const description = sp_get_port_description(*port);
        ports.push_back({sp_get_port_name(*port), description == nullptr ? "" : description});
    }
    return ports;
}

} // namespace serial
