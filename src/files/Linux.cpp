#include "files/Posix.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace files {
namespace {

constexpr std::size_t kLongest = 65536; // bytes of a list of names, and of a value

/// That go along. Others hold for the bytes of before or are the kernel's own.
bool IsWanted(std::string_view name)
{
    return name.starts_with("user.") || name.starts_with("system.") || name == "security.selinux";
}

bool TakeOver(int part, const std::filesystem::path& target, const char* name)
{
    std::string value(kLongest, '\0');
    const auto length = getxattr(target.c_str(), name, value.data(), value.size());
    return length >= 0 && fsetxattr(part, name, value.data(), static_cast<std::size_t>(length), 0) == 0;
}

} // namespace

int RenameToNew(const std::filesystem::path& part, const std::filesystem::path& target)
{
    return renameat2(AT_FDCWD, part.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
}

pid_t ForkWithoutFiles()
{
    const auto child = _Fork();
    if (child == 0) close_range(0, UINT_MAX, 0);
    return child;
}

// The access lists are those whose names begin with "system.": one of POSIX, others of network file systems.
AccessList TakeOverAttributes(int part, const std::filesystem::path& target)
{
    const bool isClean = fremovexattr(part, "system.posix_acl_access") == 0 || errno == ENODATA || errno == EOPNOTSUPP;
    std::string names(kLongest, '\0');
    const auto length = listxattr(target.c_str(), names.data(), names.size());
    if (length < 0) return isClean && errno == EOPNOTSUPP ? AccessList::None : AccessList::Lost;
    names.resize(static_cast<std::size_t>(length)); // each ends with a zero
    auto list = isClean ? AccessList::None : AccessList::Lost;
    for (std::size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1) {
        const std::string_view name = names.data() + begin;
        if (!IsWanted(name)) continue;
        const bool taken = TakeOver(part, target, name.data());
        if (name.starts_with("system.") && list != AccessList::Lost)
            list = taken ? AccessList::Taken : AccessList::Lost;
    }
    return list;
}

} // namespace files
