#include "platform/qt/Descriptors.h"

namespace platform {

void ShareNoDescriptors()
{} // the system closes windows with the program

} // namespace platform
