#include "sound/FileBytes.h"

#include <algorithm>
#include <utility>

namespace sound {

std::int64_t FileBytes::Read(void* bytes, std::int64_t count)
{
    count = std::min(count, size_ - position_);
    if (count <= 0 || !progress_.GoesOn()) return 0;
    try {
        count = file_.Read(bytes, count, position_);
    } catch (...) {
        failure_ = std::current_exception(); // of the system: no decoder lets it through
        return 0;
    }
    for (std::int64_t k = 0; k < std::ssize(overwriting_); ++k)
        if (const auto at = overwrittenAt_ + k - position_; at >= 0 && at < count)
            static_cast<char*>(bytes)[at] = overwriting_[static_cast<std::size_t>(k)];
    position_ += count;
    return count;
}

std::string FileBytes::Piece(std::int64_t position, std::int64_t count)
{
    std::string piece(static_cast<std::size_t>(count), '\0');
    const auto before = std::exchange(position_, position);
    piece.resize(static_cast<std::size_t>(Read(piece.data(), count)));
    position_ = before;
    return piece;
}

void FileBytes::Overwrite(std::int64_t position, std::string bytes)
{
    overwrittenAt_ = position;
    overwriting_ = std::move(bytes);
}

void FileBytes::RethrowFailure() const
{
    if (failure_) std::rethrow_exception(failure_);
}

} // namespace sound
