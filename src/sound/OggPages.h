// OggPages.h: whether an Ogg file's pages hold together, whatever is in them. Decoders go on behind a gap without a
// word.
#pragma once

#include "core/Progress.h"
#include "sound/FileBytes.h"

namespace sound {

struct OggPages {
    std::int64_t end = 0;  // of the last page before a gap, before another sound, or at all
    bool isWhole = false;  // that page is marked as the last
    bool isJoined = false; // another sound comes behind it
};

[[nodiscard]] bool IsOgg(FileBytes& bytes);
/// Reads all that holds together.
[[nodiscard]] OggPages CheckPages(FileBytes& bytes, const core::Progress& progress);

} // namespace sound
