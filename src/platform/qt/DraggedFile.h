// DraggedFile.h: the file that a drag or the clipboard holds.
#pragma once

#include "platform/FolderItem.h"
#include "platform/qt/Paths.h"

#include <QMimeData>

namespace platform {

/// The first of the addresses, as the file is now. An empty clipboard may have no data at all, and who offers addresses
/// may give none, when the program has ended meanwhile for example.
[[nodiscard]] inline DragItem DraggedFile(const QMimeData* data)
{
    DragItem item;
    if (data == nullptr || !data->hasUrls()) return item;
    const auto urls = data->urls();
    if (urls.isEmpty()) return item;
    if (const auto path = LocalPath(urls.constFirst())) item.FolderItem = FolderItemAt(*path);
    return item;
}

} // namespace platform
