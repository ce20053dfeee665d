#include "platform/Texts.h"

#include <QString>

namespace platform {

std::string ErrorText(const std::error_code& error)
{
    return qt_error_string(error.value()).toStdString();
}

} // namespace platform
