// FileBytes.h: the bytes of a file.
#pragma once

#include "core/Progress.h"
#include "files/Files.h"
#include "sound/ByteSource.h"

#include <string>
#include <utility>

namespace sound {

class FileBytes : public ByteSource {
public:
    /// Throws a files::IOException for what can't be opened.
    FileBytes(const std::filesystem::path& path, core::Progress progress)
        : file_(path),
          size_(file_.Size()),
          progress_(std::move(progress))
    {}

    [[nodiscard]] std::optional<std::int64_t> Size() const override { return size_; }

    /// Up to so many bytes from there on.
    [[nodiscard]] std::string Piece(std::int64_t position, std::int64_t count);
    /// From now on the file ends there.
    void EndAt(std::int64_t size) { size_ = size; }
    /// From now on these bytes stand there.
    void Overwrite(std::int64_t position, std::string bytes);

private:
    std::int64_t ReadAt(std::int64_t position, void* bytes, std::int64_t count) override;

    files::Reader file_;
    std::int64_t size_;
    core::Progress progress_;
    std::int64_t overwrittenAt_ = 0;
    std::string overwriting_;
};

} // namespace sound
