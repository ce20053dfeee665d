#include "platform/qt/Paths.h"

#include <QFile>
#include <QSysInfo>

namespace platform {

std::filesystem::path ToPath(const QString& text)
{
    return QFile::encodeName(text).toStdString();
}

QString FromPath(const std::filesystem::path& path)
{
    return QFile::decodeName(path.c_str());
}

std::optional<std::filesystem::path> LocalPath(const QUrl& url)
{
    const auto host = url.host();
    const bool thisMachine = host.isEmpty() || host == "localhost" || host == QSysInfo::machineHostName().toLower();
    if (!url.isLocalFile() || !thisMachine) return std::nullopt;
    const auto encoded = url.adjusted(QUrl::StripTrailingSlash).path(QUrl::FullyEncoded);
    auto bytes = QByteArray::fromPercentEncoding(encoded.toLatin1());
    if (bytes.contains('\0')) return std::nullopt;
    return bytes.toStdString();
}

} // namespace platform
