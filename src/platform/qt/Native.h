// Native.h: what the systems do differently.
#pragma once

#include <QFileDialog>
#include <QString>

#include <filesystem>

namespace platform {

/// Between the system's paths and the toolkit's. On Windows a name is 16-bit text, and the 8-bit text of its code page
/// doesn't hold every name; elsewhere a name is bytes, valid UTF-8 or not.
[[nodiscard]] QString ToQString(const std::filesystem::path& path);
[[nodiscard]] std::filesystem::path ToPath(const QString& path);

/// Ends a file dialog so that nothing of it is kept until the next run.
struct EndFileDialog {
    void operator()(QFileDialog* files) const;
};

} // namespace platform
