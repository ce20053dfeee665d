#include "sound/ChildProgram.h"

namespace sound {

std::int64_t ChildProgram::Read(void* bytes, std::int64_t count)
{
    std::int64_t done = 0;
    while (done < count && progress_.GoesOn()) {
        const auto read = ReadWhatComes(static_cast<char*>(bytes) + done, count - done);
        if (read == 0) break;
        if (read > 0) done += read;
    }
    position_ += done;
    return done;
}

} // namespace sound
