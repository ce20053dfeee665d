// FileDialogs.h: the file dialogs, the same on all desktops. They don't hold the window up.
#pragma once

#include "files/Files.h"
#include "studio/Words.h"

#include <QWidget>

#include <filesystem>
#include <functional>

namespace studio {

/// Calls `open` with the file that is chosen, if any.
void AskForFileToOpen(QWidget& window, Language language, const std::filesystem::path& folder,
                      std::function<void(const std::filesystem::path& file)> open);

using SaveFile = std::function<void(const std::filesystem::path& file, files::Existing existing)>;
/// Asks before it lets a file be replaced.
void AskForFileToSave(QWidget& window, Language language, Output output, const std::filesystem::path& suggested,
                      SaveFile save);

} // namespace studio
