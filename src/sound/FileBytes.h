// FileBytes.h: the bytes of a file, for a decoder, which can neither throw nor ask whether to stop.
#pragma once

#include "core/Progress.h"
#include "files/Files.h"
#include "sound/ByteSource.h"

#include <exception>
#include <string>

namespace sound {

class FileBytes : public ByteSource {
public:
    /// Throws a files::IOException for what can't be opened.
    FileBytes(const std::filesystem::path& path, const core::Progress& progress)
        : file_(path),
          size_(file_.Size()),
          progress_(progress)
    {}

    /// 0, too, where the file can't be read.
    std::int64_t Read(void* bytes, std::int64_t count) override;
    std::int64_t Position() override { return position_; }
    void Seek(std::int64_t position) override { position_ = position; }
    std::optional<std::int64_t> Size() override { return size_; }

    /// Up to so many bytes from there on.
    [[nodiscard]] std::string Piece(std::int64_t position, std::int64_t count);
    /// From now on the file ends there.
    void EndAt(std::int64_t size) { size_ = size; }
    /// From now on these bytes stand there.
    void Overwrite(std::int64_t position, std::string bytes);
    /// Throws what a reading has met.
    void RethrowFailure() const;

private:
    files::Reader file_;
    std::int64_t size_;
    core::Progress progress_;
    std::int64_t position_ = 0;
    std::int64_t overwrittenAt_ = 0;
    std::string overwriting_;
    std::exception_ptr failure_;
};

} // namespace sound
