#include "Files.h"

#include "Native.h"
#include "QtText.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kLongestRead = 16U << 20U; // bytes

QString NameOf(const fs::path& path)
{
    return ToQString(path.filename()).normalized(QString::NormalizationForm_C);
}

[[noreturn]] void Fail(const fs::path& path, const QString& reason)
{
    throw IOException((NameOf(path) + ": " + reason).toStdString());
}

[[noreturn]] void FailWithErrno(const fs::path& path)
{
    Fail(path, FromUtf8(std::generic_category().message(errno)));
}

/// Where a link leads; the last of several may lead to a file that isn't there yet.
fs::path FileMeant(const fs::path& path, bool exists)
{
    std::error_code error;
    if (!fs::is_symlink(path, error)) return path;
    return exists ? fs::canonical(path, error) : path.parent_path() / fs::read_symlink(path, error);
}

} // namespace

FolderItem FolderItemAt(const fs::path& path)
{
    std::error_code noLength;
    const auto length = fs::file_size(path, noLength);
    return {.NativePath = path, .Name = ToUtf32(NameOf(path)), .Length = noLength ? 0 : length};
}

std::string ReadBytes(const FolderItem& item)
{
    std::error_code error;
    const auto status = fs::status(item.NativePath, error);
    if (error) Fail(item.NativePath, FromUtf8(error.message()));
    if (!fs::is_regular_file(status)) Fail(item.NativePath, "This is no ordinary file.");

    errno = 0;
    std::ifstream stream(item.NativePath, std::ios::binary);
    if (!stream) FailWithErrno(item.NativePath);
    const auto length = fs::file_size(item.NativePath, error);
    std::string bytes(std::min(length, kLongestRead), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (error || stream.bad()) FailWithErrno(item.NativePath);
    if (length != item.Length || !stream) Fail(item.NativePath, "The file is being changed by another program.");
    return bytes;
}

void WriteBytes(const fs::path& path, std::string_view bytes)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    const bool replaces = fs::exists(status);
    if (replaces && !fs::is_regular_file(status)) Fail(path, "This is no ordinary file.");

    const auto target = FileMeant(path, replaces);
    if (replaces && !QFileInfo(ToQString(target)).isWritable()) Fail(path, "This file is write-protected.");

    // First under a name of our own: what a killed save leaves behind is known by it, and the next save takes it away.
    auto part = target.parent_path() / ".";
    part += target.filename();
    part += ".tonfloss-part";
    fs::remove(part, error);
    QSaveFile file(ToQString(part));
    const auto size = static_cast<qint64>(bytes.size());
    // All three are asked: on a full disk `commit` alone reports success and leaves half a file.
    const bool written = file.open(QIODevice::WriteOnly) && file.write(bytes.data(), size) == size && file.flush();
    if (!written) {
        const auto reason = file.errorString();
        file.cancelWriting();
        Fail(path, reason);
    }
    if (!file.commit()) Fail(path, file.errorString());

    if (replaces) fs::permissions(part, status.permissions(), error);
    fs::rename(part, target, error);
    if (error) {
        const auto reason = FromUtf8(error.message());
        fs::remove(part, error);
        Fail(path, reason);
    }
}

fs::path Documents()
{
    const auto documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return ToPath(QDir(documents).exists() ? documents : QDir::homePath());
}

std::string Utf8(std::u32string_view text)
{
    return FromUtf32(text).toStdString();
}

} // namespace platform
