// System.h: all that differs between POSIX systems and Windows: paths, and the few file calls that the toolkit hides or
// doesn't have. Descriptors are those of the C library; what fails leaves its reason in errno.
#pragma once

#include <QCoreApplication>
#include <QFileDialog>
#include <QString>
#include <QUrl>

#include <filesystem>
#include <optional>
#include <system_error>

namespace platform {

/// A path in the system's own form: bytes, whether they are UTF-8 or not, or 16-bit units on Windows.
[[nodiscard]] std::filesystem::path ToPath(const QString& text);
/// A path as it is shown.
[[nodiscard]] QString FromPath(const std::filesystem::path& path);

/// The file that an address means; none for what is no file that this machine can open by a path.
[[nodiscard]] std::optional<std::filesystem::path> LocalPath(const QUrl& url);

/// The file that a link leads to, there or not; none where `path` is no link.
[[nodiscard]] std::optional<std::filesystem::path> LinkTarget(const std::filesystem::path& path);
/// Why no file of that name can be made; no error for a good one.
[[nodiscard]] std::error_code NameRefusal(const std::filesystem::path& path);

/// What the system says of an error.
[[nodiscard]] QString ErrorText(const std::error_code& error);

[[nodiscard]] bool IsWritable(const std::filesystem::path& path);

/// -1 where it fails. Doesn't wait for the other end of a pipe.
[[nodiscard]] int OpenToRead(const std::filesystem::path& path);

/// Creates a file that isn't there yet, locked against RemoveLeftover; -1 where it fails.
[[nodiscard]] int CreateLocked(const std::filesystem::path& path);
/// Removes a file that nobody has locked.
void RemoveLeftover(const std::filesystem::path& path);

/// What was written is on the disk.
[[nodiscard]] bool Sync(int file);
/// Asks for what the system tells only when a file is closed. The lock stays where an open file can be renamed; where it
/// can't, `file` is closed and -1.
[[nodiscard]] bool CloseForRename(int& file);
/// Puts a rename on the disk. No failure: the renamed file is whole in any case.
void SyncFolder(const std::filesystem::path& folder);

/// A Return that is held down counts once from now on: its repetitions would answer each box that it opens.
void IgnoreRepeatedReturns(QCoreApplication& application);

/// Ends a dialog so that nothing of it is kept until the next run.
struct EndFileDialog {
    void operator()(QFileDialog* dialog) const;
};

} // namespace platform
