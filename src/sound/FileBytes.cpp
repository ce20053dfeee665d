#include "sound/FileBytes.h"

#include <algorithm>
#include <cstdio>

namespace sound {

std::int64_t FileBytes::ReadAt(std::int64_t position, void* bytes, std::int64_t count)
{
    count = std::min(count, size_ - position);
    if (count <= 0 || !progress_.GoesOn()) return 0;
    count = file_.Read(bytes, count, position);
    for (std::int64_t k = 0; k < std::ssize(overwriting_); ++k)
        if (const auto at = overwrittenAt_ + k - position; at >= 0 && at < count)
            static_cast<char*>(bytes)[at] = overwriting_[static_cast<std::size_t>(k)];
    return count;
}

std::string FileBytes::Piece(std::int64_t position, std::int64_t count)
{
    std::string piece(static_cast<std::size_t>(count), '\0');
    const auto before = Position();
    Seek(position, SEEK_SET);
    piece.resize(static_cast<std::size_t>(Read(piece.data(), count)));
    Seek(before, SEEK_SET);
    return piece;
}

void FileBytes::Overwrite(std::int64_t position, std::string bytes)
{
    overwrittenAt_ = position;
    overwriting_ = std::move(bytes);
}

} // namespace sound
