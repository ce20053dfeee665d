#include "preview/PreviewFiles.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <system_error>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#endif

namespace preview {
namespace {

namespace fs = std::filesystem;

Refusal RefusalByErrno()
{
    return {std::generic_category().message(errno)};
}

constexpr const char* kNoOrdinaryFile = "This is no ordinary file.";

bool IsSameFile(const fs::path& one, const fs::path& other)
{
    std::error_code error;
    return fs::equivalent(one, other, error);
}

/// Why no Wave file may be written at `path`, or none.
std::optional<Refusal> RefusalOfTarget(const fs::path& path, const fs::path& part, const fs::path& input, bool force)
{
    if (IsSameFile(path, input) || IsSameFile(part, input)) return Refusal{"This is the sound file itself."};
    std::error_code error;
    if (!fs::exists(fs::symlink_status(path, error))) return std::nullopt;
    if (!fs::is_regular_file(path, error)) return Refusal{kNoOrdinaryFile};
    if (!force) return Refusal{"This file exists. --force replaces it."};
    return std::nullopt;
}

/// Produces into `stream` and flushes it.
std::optional<Refusal> Fill(std::FILE* stream, const Producer& produce)
{
    const auto sink = [&](std::string_view bytes) {
        return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
    };
    errno = 0;
    if (!produce(sink) || std::fflush(stream) != 0) return RefusalByErrno();
    return std::nullopt;
}

/// A file that isn't there yet, not through a link that someone laid there.
std::FILE* OpenNew(const fs::path& path)
{
#ifdef _WIN32
    const int file = _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
    return file < 0 ? nullptr : _fdopen(file, "wb");
#else
    return std::fopen(path.c_str(), "wbx");
#endif
}

std::optional<Refusal> FillFile(const fs::path& path, const Producer& produce)
{
    auto* const stream = OpenNew(path);
    if (stream == nullptr) return RefusalByErrno();
    auto refusal = Fill(stream, produce);
    if (std::fclose(stream) != 0 && !refusal) refusal = RefusalByErrno();
    return refusal;
}

} // namespace

std::variant<SoundFile, Refusal> ReadSoundFile(const fs::path& path)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::exists(status)) return Refusal{error.message()};
    if (!fs::is_regular_file(status)) return Refusal{kNoOrdinaryFile};
    const auto length = fs::file_size(path, error);
    if (error) return Refusal{error.message()};
    if (length > kLargestFile) return Refusal{"no sound file: more than " + std::to_string(kLargestFile) + " bytes"};

    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) return RefusalByErrno();
    std::string bytes(length, '\0');
    if (!stream.read(bytes.data(), static_cast<std::streamsize>(length)))
        return Refusal{"The file is being changed by another program."};
    return ParseSoundFile(bytes);
}

std::optional<Refusal> WriteFile(const fs::path& path, const fs::path& input, bool force, const Producer& produce)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    const auto target = fs::exists(status) ? fs::canonical(path, error) : path; // a link stays one
    auto part = target.parent_path() / ".";
    part += target.filename();
    part += ".tonfloss-part";
    if (auto refusal = RefusalOfTarget(path, part, input, force)) return refusal;

    fs::remove(part, error); // of a preview that was killed
    auto refusal = FillFile(part, produce);
    if (!refusal) {
        if (fs::exists(status)) fs::permissions(part, status.permissions(), error);
        fs::rename(part, target, error);
        if (error) refusal = Refusal{error.message()};
    }
    if (refusal) fs::remove(part, error);
    return refusal;
}

std::optional<Refusal> WriteStandardOutput(const Producer& produce)
{
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    return Fill(stdout, produce);
}

} // namespace preview
