#include "files/Posix.h"

#include "files/Files.h"
#include "files/System.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace files {
namespace {

namespace fs = std::filesystem;

/// The file system knows no locks. Nobody removes a leftover there.
bool KnowsNoLocks(int error)
{
    return error == EINVAL || error == ENOLCK || error == ENOSYS || error == EOPNOTSUPP;
}

std::array<char, PATH_MAX> lastPart{}; // zeros behind the path
std::atomic<bool> isPart = false;      // lastPart is one

/// By another process, and nobody waits long for that one: the file system may never answer.
void RemovePart()
{
    constexpr int kWaits = 100;
    constexpr int kPause = 10; // ms
    if (!isPart) return;
    const auto remover = ForkWithoutFiles();
    if (remover <= 0) unlink(lastPart.data());
    if (remover == 0) _exit(EXIT_SUCCESS);
    for (int waits = 0; waits < kWaits && remover > 0 && waitpid(remover, nullptr, WNOHANG) == 0; ++waits)
        poll(nullptr, 0, kPause);
}

extern "C" void EndWithoutPart(int signal)
{
    RemovePart();
    static_cast<void>(std::signal(signal, SIG_DFL));
    static_cast<void>(raise(signal));
}

/// The rights for `part` in place of `old`, so that nobody gains one.
mode_t RightsLeft(const struct stat& old, const struct stat& part, AccessList list)
{
    constexpr mode_t kAll = 7;
    const auto owner = old.st_mode >> 6U & kAll;
    auto group = old.st_mode >> 3U & kAll;
    auto others = old.st_mode & kAll;
    const bool sameGroup = part.st_gid == old.st_gid;
    if (list == AccessList::Lost || (list == AccessList::Taken && !sameGroup))
        group = others = 0;                          // the list may have denied somebody what these give
    if (!sameGroup) group = others = group & others; // who was one of these may be one of those now
    if (part.st_uid != old.st_uid) {
        group &= owner; // so may the owner of before
        others &= owner;
    }
    return owner << 6U | group << 3U | others;
}

std::error_code LastError()
{
    return {errno, std::generic_category()};
}

} // namespace

fs::path FileMeant(const fs::path& path, std::error_code& error)
{
    constexpr int kLongestChain = 40; // a longer one is a circle
    auto meant = path;
    for (int links = 0; links < kLongestChain; ++links) {
        if (!fs::is_symlink(fs::symlink_status(meant, error))) {
            if (error == std::errc::no_such_file_or_directory) error.clear();
            return meant;
        }
        meant = meant.parent_path() / fs::read_symlink(meant, error);
        if (error) return path;
    }
    error = std::make_error_code(std::errc::too_many_symbolic_link_levels);
    return path;
}

std::error_code NameRefusal(const fs::path& /*path*/)
{
    return {};
}

bool IsWritable(const fs::path& path)
{
    return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

int OpenToRead(const fs::path& path)
{
    return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
}

std::int64_t SeekIn(int file, std::int64_t offset, int whence)
{
    return lseek(file, offset, whence);
}

// Between open and flock another program may take the file for a leftover: it then has the lock, or the name is gone.
// The count of links would tell that too, but some file systems say 0 of any file.
int CreatePart(const fs::path& path, bool isPrivate)
{
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, isPrivate ? 0600 : 0666);
    if (file < 0) return file;
    struct stat status = {};
    const bool isLocked = flock(file, LOCK_EX | LOCK_NB) == 0 || KnowsNoLocks(errno);
    if (isLocked && lstat(path.c_str(), &status) == 0) {
        lastPart.fill('\0');
        path.native().copy(lastPart.data(), lastPart.size() - 1);
        isPart = true;
        return file;
    }
    const bool wasTaken = errno == EWOULDBLOCK || errno == ENOENT;
    const int error = wasTaken ? EEXIST : errno;
    if (!wasTaken) unlink(path.c_str());
    close(file);
    errno = error;
    return -1;
}

void ForgetPart()
{
    isPart = false;
}

void RemoveLeftover(const fs::path& path)
{
    const int file = open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (file < 0) return;
    if (flock(file, LOCK_EX | LOCK_NB) == 0) unlink(path.c_str());
    close(file);
}

// It begins with rights for its owner alone, and the rights come last: at no time are they wider than in the end.
void TakeOver(int part, const fs::path& target)
{
    struct stat old = {};
    struct stat now = {};
    if (stat(target.c_str(), &old) != 0) return;
    // Where the owner can't be given away, the group may still be.
    [[maybe_unused]] const bool taken =
        fchown(part, old.st_uid, old.st_gid) == 0 || fchown(part, static_cast<uid_t>(-1), old.st_gid) == 0;
    const auto list = TakeOverAttributes(part, target);
    if (fstat(part, &now) == 0) fchmod(part, RightsLeft(old, now, list)); // not every file system has them
}

bool Sync(int file)
{
    return fsync(file) == 0 || errno == EINVAL || errno == EOPNOTSUPP;
}

bool CloseForRename(int& file)
{
    const int duplicate = dup(file);
    return duplicate >= 0 && close(duplicate) == 0;
}

std::error_code MoveOver(const fs::path& part, const fs::path& target)
{
    std::error_code error;
    fs::rename(part, target, error);
    return error;
}

std::error_code MoveToNew(const fs::path& part, const fs::path& target)
{
    if (RenameToNew(part, target) == 0) return {};
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) return LastError();
    if (link(part.c_str(), target.c_str()) == 0) {
        unlink(part.c_str());
        return {};
    }
    // No links either: an empty file holds the name until the part goes over it.
    const int holder = open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (holder < 0) return LastError();
    close(holder);
    const auto error = MoveOver(part, target);
    if (error) unlink(target.c_str());
    return error;
}

void SyncFolder(const fs::path& folder)
{
    const int file = open(folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return;
    fsync(file);
    close(file);
}

void SetBinaryStandardOutput()
{}

void BeginWriting()
{
    // In place of a standard stream that is closed, so that no file of ours gets its number.
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(standard, F_GETFD) < 0) static_cast<void>(open("/dev/null", O_RDONLY | O_CLOEXEC));
    for (const int signal : {SIGPIPE, SIGXFSZ})
        static_cast<void>(std::signal(signal, SIG_IGN));
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        if (std::signal(signal, EndWithoutPart) == SIG_IGN) static_cast<void>(std::signal(signal, SIG_IGN));
}

void EndWriting()
{
    RemovePart();
}

} // namespace files
