// WithBytes.h: a file as it is when it reaches the window.
#pragma once

#include "platform/FolderItem.h"

#include <future>

/// `item` with its bytes, which are read when they are asked for.
inline platform::DragItem WithBytes(platform::DragItem item)
{
    if (item.FolderItem)
        item.FolderItem->Bytes =
            std::async(std::launch::deferred, [file = *item.FolderItem] { return platform::ReadBytes(file); }).share();
    return item;
}
