// Descriptors.h: the open files of a thread.
#pragma once

namespace platform {

/// The calling thread has none of the program's open files any more, but the standard streams. What hangs in a file
/// system can outlive the program when somebody ends that, and a window stays on the screen for as long as anybody has
/// it open.
void ShareNoDescriptors();

} // namespace platform
