// Paths.h: between the toolkit's texts and paths in the system's own form: bytes, whether they are UTF-8 or not, or
// 16-bit units on Windows.
#pragma once

#include <QString>
#include <QUrl>

#include <filesystem>
#include <optional>

namespace platform {

[[nodiscard]] std::filesystem::path ToPath(const QString& text);
/// A path as it is shown.
[[nodiscard]] QString FromPath(const std::filesystem::path& path);

/// The file that an address means; none for what is no file that this machine can open by a path.
[[nodiscard]] std::optional<std::filesystem::path> LocalPath(const QUrl& url);

} // namespace platform
