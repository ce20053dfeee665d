#include "platform/Texts.h"

#include <QString>

namespace platform {

// The C library has numbers of its own beside the system's.
std::string ErrorText(const std::error_code& error)
{
    const bool isSystems = error.category() == std::system_category();
    const auto text = isSystems ? qt_error_string(error.value()) : QString::fromLocal8Bit(error.message().c_str());
    return text.toStdString();
}

} // namespace platform
