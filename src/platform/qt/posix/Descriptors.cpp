#include "platform/qt/Descriptors.h"

#include <climits>

#include <unistd.h>

namespace platform {

void ShareNoDescriptors()
{
#ifdef CLOSE_RANGE_UNSHARE // Linux has it, other systems share a process's files among all its threads
    close_range(STDERR_FILENO + 1, UINT_MAX, CLOSE_RANGE_UNSHARE);
#endif
}

} // namespace platform
