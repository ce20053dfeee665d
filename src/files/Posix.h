// Posix.h: what Posix.cpp needs of each POSIX system beyond POSIX.
#pragma once

#include <filesystem>

#include <sys/types.h>

namespace files {

/// Renames `part` if nothing stands at `target`; else -1, with EINVAL, ENOSYS or ENOTSUP where that isn't known.
[[nodiscard]] int RenameToNew(const std::filesystem::path& part, const std::filesystem::path& target);

/// A process like this one, but without its open files; it gets a 0. Can be called in the handler of a signal.
[[nodiscard]] pid_t ForkWithoutFiles();

/// Who may do what, by name, beyond owner, group and others.
enum class AccessList {
    None,
    Taken, // over from the one to the other
    Lost,  // it couldn't be, or isn't known
};

/// Gives `part` the extended attributes of `target`, and its access list in place of one that the folder gave.
[[nodiscard]] AccessList TakeOverAttributes(int part, const std::filesystem::path& target);

} // namespace files
