// UnfinishedWave.h: Wave files whose writer was ended before it went back to the header.
#pragma once

#include "sound/FileBytes.h"

namespace sound {

/// Where the header says that there are no data and can't be right, it says from now on that all behind it are data.
void FillInDataSize(FileBytes& bytes);

} // namespace sound
