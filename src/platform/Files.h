// Files.h: the files that the user names, read whole and written whole.
#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A file that can't be read or written: what happened, not how it is told.
class IOException : public std::exception {
public:
    enum class Kind {
        NoOrdinaryFile, // a folder, a device, a pipe
        BeingChanged,   // by another program, while it was read
        WriteProtected,
        System, // `SystemText` says it
    };

    IOException(Kind kind, std::string fileName, std::string systemText = {});

    Kind ErrorKind;
    std::string FileName;   // without folders; UTF-8
    std::string SystemText; // in the system's own words; UTF-8
};

/// A file that the user drags, drops or pastes: plain data, so that a test can fill it.
struct FolderItem {
    std::filesystem::path NativePath; // as the system has it, valid UTF-8 or not
    std::u32string Name;              // without folders, composed (NFC): a decomposed umlaut is one character
    std::uint64_t Length = 0;         // bytes
    std::filesystem::file_time_type Changed = {};
};

/// What the user drags. Only the first item of a drag counts.
struct DragItem {
    std::optional<platform::FolderItem> FolderItem; // none for a text, or for an address that is no local file

    [[nodiscard]] bool FolderItemAvailable() const { return FolderItem.has_value(); }
};

/// The file at `path` as it is now. Length and time are 0 where it has none.
[[nodiscard]] FolderItem FolderItemAt(const std::filesystem::path& path);

/// The bytes of a file, of a longer one the first 16 MiB: enough to test it, and never more than memory can hold.
/// Throws IOException, before anything blocks, for all that isn't a regular file, and for a file that can't be read or
/// whose length or time of change isn't that of `item` before or after it was read.
[[nodiscard]] std::string ReadBytes(const FolderItem& item);

/// Replaces the file at `path` by `bytes`, or creates it: whole and on the disk, or not at all. Throws IOException where
/// it can't, with the old file as it was; also for a target that exists and isn't a regular file.
void WriteBytes(const std::filesystem::path& path, std::string_view bytes);

/// The user's documents folder, or the home folder where there is none.
[[nodiscard]] std::filesystem::path Documents();

/// A text of characters as the window shows it.
[[nodiscard]] std::string Utf8(std::u32string_view text);

} // namespace platform
