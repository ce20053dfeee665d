// ByteSource.h: the bytes of a sound, whatever they come from.
#pragma once

#include <cstdint>
#include <optional>

namespace sound {

class ByteSource {
public:
    ByteSource() = default;
    virtual ~ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// Reads up to `count` bytes; 0 at the end, and where the reading is to stop.
    virtual std::int64_t Read(void* bytes, std::int64_t count) = 0;
    /// Where the next byte is read.
    [[nodiscard]] virtual std::int64_t Position() = 0;
    /// Goes on reading elsewhere, where that can be.
    virtual void Seek(std::int64_t position) = 0;
    /// How many there are; none where nobody knows before the end, and then there is no other order than theirs.
    [[nodiscard]] virtual std::optional<std::int64_t> Size() = 0;
};

} // namespace sound
