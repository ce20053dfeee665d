#include "sound/ByteSource.h"

#include <cstdio>

namespace sound {

std::int64_t ByteSource::Read(void* bytes, std::int64_t count) noexcept
{
    try {
        const auto read = ReadAt(position_, bytes, count);
        position_ += read;
        return read;
    } catch (...) {
        failure_ = std::current_exception();
        return 0;
    }
}

std::int64_t ByteSource::Seek(std::int64_t offset, int whence) noexcept
{
    if (const auto size = Size())
        position_ = offset + (whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position_ : *size);
    return position_;
}

void ByteSource::RethrowFailure() const
{
    if (failure_) std::rethrow_exception(failure_);
}

} // namespace sound
