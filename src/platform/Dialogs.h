// Dialogs.h: all that waits for the user, and the yield. The window gets it through its constructor, so that a test can
// hand in its own. Texts are UTF-8 and shown letter for letter, never as rich text.
#pragma once

#include "files/Files.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A kind of file, as the desktop and its dialogs know it.
struct FileType {
    std::string_view Name;
    std::string_view Extensions; // with the point: ".bin"
    std::string_view MacType;
    std::string_view MacCreator;
    std::string_view MimeType;
    bool Imported;
    std::string_view ConformsTo;
    std::string_view UTI;
};

struct SaveAsDialog {
    std::filesystem::path InitialDirectory;
    std::string PromptText; // stands in a row of its own above the rest
    std::string SuggestedFileName;
    std::string Title;
    std::string Filter; // from FilterText
};

struct SaveChoice {
    std::filesystem::path File;
    files::Existing Existing = files::Existing::Refuse; // Replace: something stood there, and the user agreed
};

/// "Untitled (*.bin)": a file type as a dialog's filter wants it.
[[nodiscard]] std::string FilterText(const FileType& type);

/// A file's name for a box: control characters made visible, and a long one shortened in the middle, so that it stays
/// on the screen. Requires: an Application.
[[nodiscard]] std::string ShownName(std::string_view utf8);

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Shows a text and returns when the user has dismissed it.
    virtual void MsgBox(std::string_view utf8) = 0;

    /// Asks for a file to write, also before it replaces one; none where the user cancels. Adds no suffix.
    virtual std::optional<SaveChoice> ShowModal(const SaveAsDialog& dialog) = 0;

    /// Lets the toolkit do pending work, but take no key or click. Cheap where the last time is less than 20 ms ago.
    virtual void RuntimeBackgroundTask() = 0;
};

/// The dialogs of the desktop. Requires: an Application.
[[nodiscard]] std::unique_ptr<Dialogs> MakeDialogs();

} // namespace platform
