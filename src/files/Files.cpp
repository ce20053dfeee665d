#include "files/Files.h"

#include "files/System.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include <unistd.h>

namespace files {
namespace {

namespace fs = std::filesystem;
using Kind = IOException::Kind;

std::error_code LastError()
{
    return {errno, std::generic_category()};
}

[[noreturn]] void Fail(const fs::path& path, const std::error_code& error)
{
    throw IOException(Kind::System, path, error);
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

void RequireOrdinary(const fs::path& path)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (error) Fail(path, error);
    if (!fs::is_regular_file(status)) throw IOException(Kind::NoOrdinaryFile, path);
}

void RequireState(const fs::path& path, const FileState& state)
{
    RequireOrdinary(path);
    if (StateOf(path) != state) throw IOException(Kind::BeingChanged, path);
}

/// `path` is what the user knows of the file.
void WriteAll(int file, std::string_view bytes, const fs::path& path)
{
    constexpr std::size_t kMost = 1U << 20U; // bytes a call; not every system counts as far as a text may reach
    while (!bytes.empty()) {
        const auto written = write(file, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), kMost)));
        if (written < 0) Fail(path, LastError());
        if (written == 0) Fail(path, std::make_error_code(std::errc::io_error)); // it would never end
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

constexpr std::string_view kPartName = ".tonfloss-part-"; // and a number

bool IsPartName(const fs::path& path)
{
    const auto prefix = fs::path(kPartName).native();
    const auto name = path.filename().native();
    constexpr auto kDigits = std::numeric_limits<std::uint32_t>::digits10 + 1;
    return name.starts_with(prefix) && name.size() > prefix.size() && name.size() <= prefix.size() + kDigits &&
           std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end(),
                       [](auto digit) { return digit >= '0' && digit <= '9'; });
}

bool IsOneOf(const std::vector<fs::path>& files, const fs::path& path)
{
    std::error_code unknown;
    return std::ranges::any_of(files, [&](const auto& file) { return fs::equivalent(path, file, unknown); });
}

/// Takes away what killed programs have left, but nothing that another one is writing, and none of the `sources`.
void RemoveLeftovers(const fs::path& folder, const std::vector<fs::path>& sources)
{
    std::error_code unreadable;
    for (fs::directory_iterator entry(folder, unreadable), end; !unreadable && entry != end;
         entry.increment(unreadable))
        if (IsPartName(entry->path()) && !IsOneOf(sources, entry->path())) RemoveLeftover(entry->path());
}

/// Where a file is to be written.
struct Target {
    fs::path named; // by the user
    fs::path meant; // behind all links
    bool exists;
};

/// A file under a name of our own beside the one that is meant, until it is whole.
class PartFile {
public:
    PartFile(const Target& target, const std::vector<fs::path>& sources) : target_(target)
    {
        constexpr int kTries = 100;
        const auto folder = target.meant.parent_path();
        RemoveLeftovers(folder, sources);
        std::random_device number;
        for (int tries = 0; part_.file < 0 && tries < kTries; ++tries) {
            path_ = folder / (std::string(kPartName) + std::to_string(static_cast<std::uint32_t>(number())));
            part_.file = CreatePart(path_, target.exists);
            if (part_.file < 0 && errno != EEXIST) break;
        }
        if (part_.file >= 0) return;
        // Names enough: others take each of our files for a leftover.
        const auto error = errno == EEXIST ? std::make_error_code(std::errc::device_or_resource_busy) : LastError();
        const bool refused = error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
        if (target.exists && refused) throw IOException(Kind::FolderProtected, target.named);
        Fail(target.named, error);
    }
    ~PartFile()
    {
        part_.Close(); // an open file can't be removed everywhere
        std::error_code renamed;
        if (!finished_) fs::remove(path_, renamed);
        ForgetPart();
    }
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;

    void Write(std::string_view bytes) { WriteAll(part_.file, bytes, target_.named); }

    void Finish(Existing existing)
    {
        if (target_.exists) TakeOver(part_.file, target_.meant);
        if (!Sync(part_.file) || !CloseForRename(part_.file)) Fail(target_.named, LastError());
        const auto error =
            existing == Existing::Replace ? MoveOver(path_, target_.meant) : MoveToNew(path_, target_.meant);
        if (error == std::errc::file_exists) throw IOException(Kind::Exists, target_.named);
        if (error) Fail(target_.named, error);
        finished_ = true;
        SyncFolder(target_.meant.parent_path());
    }

private:
    const Target& target_;
    fs::path path_;
    Descriptor part_{-1};
    bool finished_ = false;
};

Target RequireTarget(const fs::path& path, Existing existing, const std::vector<fs::path>& sources)
{
    std::error_code error;
    const auto status = fs::status(path, error);
    if (!fs::status_known(status)) Fail(path, error); // a folder that may not be read, for one
    if (const auto refusal = NameRefusal(path)) Fail(path, refusal);
    const bool exists = fs::exists(status);
    if (exists && !fs::is_regular_file(status)) throw IOException(Kind::NoOrdinaryFile, path);
    if (exists && IsOneOf(sources, path)) throw IOException(Kind::IsTheSource, path);
    if (exists && existing == Existing::Refuse) throw IOException(Kind::Exists, path);
    auto meant = FileMeant(fs::path(".") / path, error); // also of a mere name the folder
    if (error) Fail(path, error);
    if (IsPartName(meant)) Fail(path, std::make_error_code(std::errc::invalid_argument)); // a later one would remove it
    if (exists && !IsWritable(meant)) throw IOException(Kind::WriteProtected, path);
    return {.named = path, .meant = std::move(meant), .exists = exists};
}

} // namespace

IOException::IOException(Kind kind, fs::path file, std::error_code error)
    : ErrorKind(kind),
      File(std::move(file)),
      Error(error),
      what_(Name() + ": " + Reason())
{}

std::string IOException::Name() const
{
    const auto name = File.u8string();
    return {name.begin(), name.end()};
}

std::string IOException::Reason() const
{
    switch (ErrorKind) {
    case Kind::NoOrdinaryFile: return "This is no ordinary file.";
    case Kind::BeingChanged: return "The file is being changed by another program.";
    case Kind::WriteProtected: return "This file is write-protected.";
    case Kind::FolderProtected: return "No file can be made in this folder.";
    case Kind::Exists: return "This file exists.";
    case Kind::IsTheSource: return "This is the file that is read.";
    case Kind::System: break;
    }
    return Error.message();
}

FileState StateOf(const fs::path& path)
{
    std::error_code noLength;
    std::error_code noTime;
    const auto length = fs::file_size(path, noLength);
    const auto changed = fs::last_write_time(path, noTime);
    return {.Length = noLength ? 0 : length, .Changed = noTime ? fs::file_time_type() : changed};
}

std::string ReadBytes(const fs::path& path, const FileState& state, std::uint64_t atMost)
{
    RequireState(path, state);
    std::string bytes(std::min(state.Length, atMost), '\0');
    if (Reader(path).Read(bytes.data(), std::ssize(bytes), 0) < std::ssize(bytes))
        throw IOException(Kind::BeingChanged, path);
    RequireState(path, state);
    return bytes;
}

std::string ReadBytes(const fs::path& path, std::uint64_t atMost)
{
    return ReadBytes(path, StateOf(path), atMost);
}

Reader::Reader(const fs::path& path) : path_(path)
{
    RequireOrdinary(path); // the opening of a device may do something
    Descriptor opened(OpenToRead(path));
    if (opened.file < 0) Fail(path, LastError());
    size_ = SeekIn(opened.file, 0, SEEK_END);
    if (size_ < 0) Fail(path, LastError());
    file_ = std::exchange(opened.file, -1);
}

Reader::~Reader()
{
    close(file_);
}

std::int64_t Reader::Read(void* bytes, std::int64_t count, std::int64_t position) const
{
    constexpr std::int64_t kMost = 1 << 20; // bytes a call, as in writing
    if (SeekIn(file_, position, SEEK_SET) < 0) Fail(path_, LastError());
    std::int64_t done = 0;
    while (done < count) {
        const auto now = static_cast<unsigned>(std::min(count - done, kMost));
        const auto read = ::read(file_, static_cast<char*>(bytes) + done, now);
        if (read < 0) Fail(path_, LastError());
        if (read == 0) break;
        done += read;
    }
    return done;
}

void Write(const fs::path& path, Existing existing, const Producer& produce, const std::vector<fs::path>& sources)
{
    const auto target = RequireTarget(path, existing, sources);
    PartFile part(target, sources);
    produce([&](std::string_view bytes) { part.Write(bytes); });
    part.Finish(existing);
}

void Write(const fs::path& path, Existing existing, std::string_view bytes)
{
    Write(path, existing, [&](const ByteSink& sink) { sink(bytes); });
}

void RequireWritable(const fs::path& path, Existing existing, const std::vector<fs::path>& sources)
{
    const auto target = RequireTarget(path, existing, sources);
    const PartFile part(target, sources);
}

void WriteStandardOutput(const Producer& produce)
{
    SetBinaryStandardOutput();
    produce([](std::string_view bytes) { WriteAll(STDOUT_FILENO, bytes, "standard output"); });
}

} // namespace files
