#include "files/Files.h"
#include "files/System.h"

#include <cstdio>
#include <regex>
#include <utility>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <unistd.h>
#include <windows.h>

namespace files {
namespace {

namespace fs = std::filesystem;

std::error_code SystemError()
{
    return {static_cast<int>(GetLastError()), std::system_category()};
}

} // namespace

// The standard library knows no links here.
fs::path FileMeant(const fs::path& path, std::error_code& error)
{
    error.clear();
    const auto attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return path;
    constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    auto* const file =
        CreateFileW(path.c_str(), 0, kShared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return error = SystemError(), path;
    std::wstring meant(32768, L'\0'); // the longest path
    const auto length = GetFinalPathNameByHandleW(file, meant.data(), static_cast<DWORD>(meant.size()), 0);
    if (length == 0) error = SystemError();
    CloseHandle(file);
    meant.resize(length);
    return meant;
}

// The system would take some of these for a device, a stream or a shorter name, and report no error.
std::error_code NameRefusal(const fs::path& path)
{
    static const std::wregex kBad(LR"([<>:"|?*\x01-\x1F]|[ .]$|^(CON|PRN|AUX|NUL|COM\d|LPT\d)(\.|$))",
                                  std::regex::ECMAScript | std::regex::icase);
    if (!std::regex_search(path.filename().native(), kBad)) return {};
    return {ERROR_INVALID_NAME, std::system_category()};
}

bool IsWritable(const fs::path& path)
{
    constexpr int kWrite = 2;
    return _waccess(path.c_str(), kWrite) == 0;
}

int OpenToRead(const fs::path& path)
{
    return _wopen(path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

std::int64_t SeekIn(int file, std::int64_t offset, int whence)
{
    return _lseeki64(file, offset, whence);
}

// An open file is locked against removal by the system itself. Rights are the folder's until the rename.
int CreatePart(const fs::path& path, bool /*isPrivate*/)
{
    return _wopen(path.c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

void ForgetPart()
{}

void RemoveLeftover(const fs::path& path)
{
    std::error_code inUse;
    fs::remove(path, inUse);
}

void TakeOver(int /*part*/, const fs::path& /*target*/)
{} // MoveOver does it

bool Sync(int file)
{
    return _commit(file) == 0;
}

bool CloseForRename(int& file)
{
    return _close(std::exchange(file, -1)) == 0;
}

// The first call takes over rights, attributes and streams of the file that stands there. Where it can't, as for a file
// that isn't there any more, the second goes without. Wine's first call takes no relative paths.
std::error_code MoveOver(const fs::path& part, const fs::path& target)
{
    if (ReplaceFileW(fs::absolute(target).c_str(), fs::absolute(part).c_str(), nullptr, 0, nullptr, nullptr) != 0)
        return {};
    const auto error = GetLastError();
    const bool isGone = error == ERROR_FILE_NOT_FOUND || error == ERROR_UNABLE_TO_MOVE_REPLACEMENT;
    if (isGone && MoveFileExW(part.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0) return {};
    return isGone ? SystemError() : std::error_code(static_cast<int>(error), std::system_category());
}

std::error_code MoveToNew(const fs::path& part, const fs::path& target)
{
    if (MoveFileExW(part.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH) != 0) return {};
    if (GetLastError() == ERROR_ALREADY_EXISTS) return std::make_error_code(std::errc::file_exists);
    return SystemError();
}

void SyncFolder(const fs::path& /*folder*/)
{} // the file system's journal does it

void SetBinaryStandardOutput()
{
    _setmode(_fileno(stdout), _O_BINARY);
}

// A program with a window has no console. What it says goes to that of the shell which has started it, if there is one
// and the output wasn't sent elsewhere.
void BeginWriting()
{
    const std::pair<std::FILE*, int> standard[] = {{stdout, STDOUT_FILENO}, {stderr, STDERR_FILENO}};
    if (!AttachConsole(ATTACH_PARENT_PROCESS)) return;
    for (const auto& [stream, descriptor] : standard)
        if (_fileno(stream) < 0 && std::freopen("CONOUT$", "w", stream) != nullptr) _dup2(_fileno(stream), descriptor);
}

void EndWriting()
{} // a file that is open can't be removed

} // namespace files
