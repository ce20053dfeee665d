// DraggedFile.h: the file that a drag or the clipboard holds. Whatever asks the file system is done by a FileThread.
#pragma once

#include "platform/FolderItem.h"

#include <QFuture>
#include <QMimeData>

#include <chrono>
#include <filesystem>
#include <future>
#include <optional>

namespace platform {

/// Where the first of the addresses leads; none for what is no file of this machine. An empty clipboard may have no
/// data at all, and who offers addresses may give none, when the program has ended meanwhile for example.
[[nodiscard]] std::optional<std::filesystem::path> DraggedPath(const QMimeData* data);

/// The file as it is now, without its bytes.
[[nodiscard]] std::shared_future<DragItem> Note(std::optional<std::filesystem::path> path);

/// The file with its bytes, or with the reason why there are none; read when it has been `noted` and `hover` is over.
[[nodiscard]] QFuture<DragItem> Read(std::shared_future<DragItem> noted, std::chrono::milliseconds hover = {});

} // namespace platform
