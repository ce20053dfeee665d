#include "platform/qt/Paths.h"

#include <QDir>

namespace platform {

std::filesystem::path ToPath(const QString& text)
{
    return QDir::toNativeSeparators(text).toStdWString();
}

QString FromPath(const std::filesystem::path& path)
{
    return QString::fromStdWString(path.wstring());
}

std::optional<std::filesystem::path> LocalPath(const QUrl& url)
{
    auto local = url; // or of a server: "//server/share/name"
    if (url.host() == "localhost") local.setHost({});
    const auto file = local.toLocalFile();
    if (file.isEmpty() || file.contains(QChar::Null)) return std::nullopt;
    return ToPath(file);
}

} // namespace platform
