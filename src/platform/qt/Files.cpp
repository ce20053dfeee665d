#include "platform/Files.h"

#include "platform/qt/QtText.h"
#include "platform/qt/System.h"

#include <QDir>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <utility>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace platform {
namespace {

namespace fs = std::filesystem;
using Kind = IOException::Kind;

constexpr std::uint64_t kLongestRead = 16U << 20U; // bytes
constexpr std::string_view kPartName = ".tonfloss-part-";

/// The name without folders; where there is none, as for the root, the path.
QString NameOf(const fs::path& path)
{
    return FromPath(path.has_filename() ? path.filename() : path).normalized(QString::NormalizationForm_C);
}

[[noreturn]] void Fail(const fs::path& path, Kind kind)
{
    throw IOException(kind, NameOf(path).toStdString());
}

[[noreturn]] void Fail(const fs::path& path, const std::error_code& error)
{
    throw IOException(Kind::System, NameOf(path).toStdString(), ErrorText(error).toStdString());
}

std::error_code LastError()
{
    return {errno, std::generic_category()};
}

/// Of the C library.
class Descriptor {
public:
    explicit Descriptor(int opened) : file(opened) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    void Close()
    {
        if (file >= 0) close(std::exchange(file, -1));
    }

    int file; // -1 for none
};

void RequireUnchanged(const FolderItem& item)
{
    std::error_code error;
    const auto status = fs::status(item.NativePath, error);
    if (error) Fail(item.NativePath, error);
    if (!fs::is_regular_file(status)) Fail(item.NativePath, Kind::NoOrdinaryFile);
    const auto now = FolderItemAt(item.NativePath);
    if (now.Length != item.Length || now.Changed != item.Changed) Fail(item.NativePath, Kind::BeingChanged);
}

/// What `path` means: the end of a chain of links, which may be a file that isn't there yet.
fs::path FileMeant(const fs::path& path)
{
    constexpr int kLongestChain = 40; // a longer one is a circle
    auto meant = path;
    for (int links = 0; links < kLongestChain; ++links) {
        const auto target = LinkTarget(meant);
        if (!target) return meant;
        meant = *target;
    }
    Fail(path, std::make_error_code(std::errc::too_many_symbolic_link_levels));
}

bool IsPartName(const fs::path& path)
{
    const auto name = FromPath(path.filename());
    const auto prefix = FromUtf8(kPartName);
    bool isNumber = false;
    if (name.startsWith(prefix)) (void)name.sliced(prefix.size()).toUInt(&isNumber);
    return isNumber;
}

/// A file under a name of our own beside the one that is meant, until it is whole.
class PartFile {
public:
    /// Takes away what killed saves have left in `folder`, but nothing that another program is writing.
    explicit PartFile(const fs::path& folder)
    {
        std::error_code unreadable;
        for (fs::directory_iterator entry(folder, unreadable), end; !unreadable && entry != end;
             entry.increment(unreadable))
            if (IsPartName(entry->path())) RemoveLeftover(entry->path());
        do {
            path_ = folder / ToPath(FromUtf8(kPartName) + QString::number(QRandomGenerator::global()->generate()));
            part_.file = CreateLocked(path_);
        } while (part_.file < 0 && errno == EEXIST);
        if (part_.file < 0) throw std::system_error(LastError());
    }
    ~PartFile()
    {
        part_.Close(); // an open file can't be removed everywhere
        std::error_code renamed;
        fs::remove(path_, renamed);
    }
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    void Write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const auto written = write(part_.file, bytes.data(), static_cast<unsigned>(bytes.size()));
            if (written < 0) throw std::system_error(LastError());
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
        if (!Sync(part_.file)) throw std::system_error(LastError());
    }

    void RenameTo(const fs::path& target, const std::optional<fs::perms>& permissions)
    {
        std::error_code error;
        if (permissions) fs::permissions(path_, *permissions, error); // not every file system has them
        if (!CloseForRename(part_.file)) throw std::system_error(LastError());
        fs::rename(path_, target);
        SyncFolder(target.parent_path());
    }

private:
    fs::path path_;
    Descriptor part_{-1};
};

} // namespace

IOException::IOException(Kind kind, std::string fileName, std::string systemText)
    : ErrorKind(kind),
      FileName(std::move(fileName)),
      SystemText(std::move(systemText))
{}

FolderItem FolderItemAt(const fs::path& path)
{
    std::error_code noLength;
    std::error_code noTime;
    const auto length = fs::file_size(path, noLength);
    const auto changed = fs::last_write_time(path, noTime);
    return {.NativePath = path,
            .Name = ToUtf32(NameOf(path)),
            .Length = noLength ? 0 : length,
            .Changed = noTime ? fs::file_time_type() : changed};
}

std::string ReadBytes(const FolderItem& item)
{
    RequireUnchanged(item);
    const Descriptor source(OpenToRead(item.NativePath));
    if (source.file < 0) Fail(item.NativePath, LastError());
    std::string bytes(std::min(item.Length, kLongestRead), '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        const auto count = read(source.file, &bytes[done], static_cast<unsigned>(bytes.size() - done));
        if (count < 0) Fail(item.NativePath, LastError());
        if (count == 0) Fail(item.NativePath, Kind::BeingChanged);
        done += static_cast<std::size_t>(count);
    }
    RequireUnchanged(item);
    return bytes;
}

void WriteBytes(const fs::path& path, std::string_view bytes)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    const bool replaces = fs::exists(status);
    if (!fs::status_known(status)) Fail(path, error); // a folder that may not be read, for one
    if (const auto refusal = NameRefusal(path)) Fail(path, refusal);
    if (replaces && !fs::is_regular_file(status)) Fail(path, Kind::NoOrdinaryFile);
    const auto target = FileMeant(path);
    if (IsPartName(target))
        Fail(path, std::make_error_code(std::errc::invalid_argument)); // a later save would remove it
    if (replaces && !IsWritable(target)) Fail(path, Kind::WriteProtected);
    try {
        PartFile part(target.parent_path());
        part.Write(bytes);
        part.RenameTo(target, replaces ? std::optional(status.permissions()) : std::nullopt);
    } catch (const std::system_error& failure) {
        Fail(path, failure.code());
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
