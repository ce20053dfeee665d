#include "files/Posix.h"

#include <copyfile.h>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace files {

int RenameToNew(const std::filesystem::path& part, const std::filesystem::path& target)
{
    return renamex_np(part.c_str(), target.c_str(), RENAME_EXCL);
}

pid_t ForkWithoutFiles()
{
    const auto child = fork();
    for (int file = 0; child == 0 && file < getdtablesize(); ++file)
        close(file);
    return child;
}

AccessList TakeOverAttributes(int part, const std::filesystem::path& target)
{
    const int from = open(target.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (from < 0) return AccessList::Lost;
    const bool taken = fcopyfile(from, part, nullptr, COPYFILE_ACL | COPYFILE_XATTR) == 0;
    close(from);
    return taken ? AccessList::Taken : AccessList::Lost;
}

} // namespace files
