#include "platform/FolderItem.h"

#include "platform/Texts.h"
#include "platform/qt/Paths.h"

#include <QDir>
#include <QStandardPaths>

namespace platform {

FolderItem FolderItemAt(const std::filesystem::path& path)
{
    return {.NativePath = path,
            .Name = QString::fromStdString(NameOf(path)).toStdU32String(),
            .State = files::StateOf(path),
            .Bytes = {}};
}

std::string ReadBytes(const FolderItem& item)
{
    constexpr std::uint64_t kLongest = 16U << 20U; // bytes
    return files::ReadBytes(item.NativePath, item.State, kLongest);
}

std::filesystem::path Documents()
{
    const auto documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return ToPath(QDir(documents).exists() ? documents : QDir::homePath());
}

} // namespace platform
