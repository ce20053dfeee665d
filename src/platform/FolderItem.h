// FolderItem.h: the files that the user shows to the window.
#pragma once

#include "files/Files.h"

#include <filesystem>
#include <future>
#include <optional>
#include <string>

namespace platform {

/// A file that the user drags, drops or pastes: plain data, so that a test can fill it.
struct FolderItem {
    std::filesystem::path NativePath; // as the system has it, valid UTF-8 or not
    std::u32string Name;              // without folders, composed (NFC): a decomposed umlaut is one character
    files::FileState State;
    std::shared_future<std::string> Bytes = {}; // from the drop on; throws what reading them has thrown
};

/// What the user drags. Only the first item of a drag counts.
struct DragItem {
    std::optional<platform::FolderItem> FolderItem; // none for a text, or for an address that is no local file

    [[nodiscard]] bool FolderItemAvailable() const { return FolderItem.has_value(); }
};

/// The file at `path` as it is now. On any thread; may wait for as long as the file system does.
[[nodiscard]] FolderItem FolderItemAt(const std::filesystem::path& path);

/// The bytes of a file, of a longer one the first 16 MiB: enough to test it, and never more than memory can hold.
/// Throws files::IOException, also where the file isn't any more as `item` has it.
[[nodiscard]] std::string ReadBytes(const FolderItem& item);

/// The user's documents folder, or the home folder where there is none.
[[nodiscard]] std::filesystem::path Documents();

} // namespace platform
