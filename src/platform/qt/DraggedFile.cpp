#include "platform/qt/DraggedFile.h"

#include "platform/qt/FileThread.h"
#include "platform/qt/Paths.h"

#include <QPromise>

#include <algorithm>
#include <thread>
#include <utility>

namespace platform {

std::optional<std::filesystem::path> DraggedPath(const QMimeData* data)
{
    if (data == nullptr || !data->hasUrls()) return std::nullopt;
    const auto urls = data->urls();
    const auto isComment = [](const QUrl& url) { return url.toEncoded().startsWith('#'); };
    const auto first = std::ranges::find_if_not(urls, isComment);
    return first == urls.end() ? std::nullopt : LocalPath(*first);
}

std::shared_future<DragItem> Note(std::optional<std::filesystem::path> path)
{
    return InFileThread([path = std::move(path)] {
        DragItem item;
        if (path) item.FolderItem = FolderItemAt(*path);
        return item;
    });
}

// One thread more, that touches no file: the toolkit can't be told from one that has left its descriptors.
QFuture<DragItem> Read(std::shared_future<DragItem> noted, std::chrono::milliseconds hover)
{
    QPromise<DragItem> promise;
    auto whole = promise.future();
    promise.start();
    std::thread([noted = std::move(noted), hover, promise = std::move(promise)]() mutable {
        auto item = noted.get();
        std::this_thread::sleep_for(hover);
        if (item.FolderItem) {
            item.FolderItem->Bytes = InFileThread([file = *item.FolderItem] { return ReadBytes(file); });
            item.FolderItem->Bytes.wait();
        }
        promise.addResult(std::move(item));
        promise.finish();
    }).detach();
    return whole;
}

} // namespace platform
