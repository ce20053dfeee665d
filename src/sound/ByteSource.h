// ByteSource.h: the bytes of a sound, whatever they come from, for decoders: C libraries, through which nothing may be
// thrown, and which ask nobody whether to stop.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>

namespace sound {

class ByteSource {
public:
    ByteSource() = default;
    virtual ~ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// Reads up to `count` bytes; 0 at the end, where the reading is to stop, and where it fails.
    std::int64_t Read(void* bytes, std::int64_t count) noexcept;
    /// Where the next byte is read.
    [[nodiscard]] std::int64_t Position() const { return position_; }
    /// Goes on reading elsewhere, as lseek; nowhere else where the size is unknown. The position.
    std::int64_t Seek(std::int64_t offset, int whence) noexcept;
    /// How many there are; none where nobody knows before the end, and then there is no other order than theirs.
    [[nodiscard]] virtual std::optional<std::int64_t> Size() const = 0;
    /// Throws what a reading has met.
    void RethrowFailure() const;

private:
    /// As Read, but may throw.
    virtual std::int64_t ReadAt(std::int64_t position, void* bytes, std::int64_t count) = 0;

    std::int64_t position_ = 0;
    std::exception_ptr failure_;
};

} // namespace sound
