// System.h: the calls that differ between systems, for Files.cpp alone. Each system has a file that fills them in.
// Descriptors are those of the C library, -1 for none; where nothing else is said, what fails leaves its reason in
// errno.
#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace files {

/// What `path` means: the end of a chain of links, which may be a file that isn't there yet.
[[nodiscard]] std::filesystem::path FileMeant(const std::filesystem::path& path, std::error_code& error);
/// Why no file of that name can be made; no error for a good one.
[[nodiscard]] std::error_code NameRefusal(const std::filesystem::path& path);
[[nodiscard]] bool IsWritable(const std::filesystem::path& path);

/// Doesn't wait for the other end of a pipe.
[[nodiscard]] int OpenToRead(const std::filesystem::path& path);
/// Goes to a place in it: as lseek, for files of any length.
[[nodiscard]] std::int64_t SeekIn(int file, std::int64_t offset, int whence);
/// Opens a file that isn't there yet, locked against RemoveLeftover. EEXIST: try another name. If it `isPrivate`,
/// nobody but its owner may open it.
[[nodiscard]] int CreatePart(const std::filesystem::path& path, bool isPrivate);
/// Says that the file of CreatePart isn't a part any more, or isn't any more: a signal that ends the program leaves it.
void ForgetPart();
/// Removes a file that nobody has locked.
void RemoveLeftover(const std::filesystem::path& path);

/// Gives `part` what `target` has besides its bytes; a right that can't be given as it was is dropped. No failure.
void TakeOver(int part, const std::filesystem::path& target);
/// What was written is on the disk, if the file system knows such a thing.
[[nodiscard]] bool Sync(int file);
/// Asks for what the system tells only when a file is closed. The lock stays where an open file can be renamed; where
/// it can't, `file` is closed and -1.
[[nodiscard]] bool CloseForRename(int& file);
/// Renames `part`, also over a file that stands there.
[[nodiscard]] std::error_code MoveOver(const std::filesystem::path& part, const std::filesystem::path& target);
/// Renames `part` if nothing stands there: errc::file_exists.
[[nodiscard]] std::error_code MoveToNew(const std::filesystem::path& part, const std::filesystem::path& target);
/// Puts a rename on the disk. No failure: the renamed file is whole in any case.
void SyncFolder(const std::filesystem::path& folder);

/// Keeps the system from changing bytes that go to the standard output.
void SetBinaryStandardOutput();

} // namespace files
