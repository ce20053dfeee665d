#include "studio/qt/FileDialogs.h"

#include "platform/qt/Paths.h"
#include "studio/qt/Texts.h"

#include <QAbstractItemView>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace studio {
namespace {

class FileDialog : public QFileDialog {
public:
    FileDialog(QWidget& window, const QString& title, const QString& folder) : QFileDialog(&window, title, folder)
    {
        setOption(DontUseNativeDialog);
        setOption(DontConfirmOverwrite); // SaveDialog asks
        setAttribute(Qt::WA_DeleteOnClose);
        setWindowModality(Qt::WindowModal);
        // A file that is dragged onto a folder here would be moved.
        for (auto* const view : findChildren<QAbstractItemView*>())
            view->setDragDropMode(QAbstractItemView::NoDragDrop);
    }
};

class SaveDialog : public FileDialog {
public:
    SaveDialog(QWidget& window, Language language, const QString& title, const QString& folder, SaveFile save)
        : FileDialog(window, title, folder),
          language_(language),
          save_(std::move(save))
    {
        setAcceptMode(AcceptSave);
        setFileMode(AnyFile);
    }

    void accept() override
    {
        const QFileInfo file(selectedFiles().value(0));
        const bool replaces = file.exists() && !file.isDir();
        if (replaces && !MayReplace(file.fileName())) return;
        QFileDialog::accept();
        if (result() == Accepted)
            save_(platform::ToPath(file.absoluteFilePath()),
                  replaces ? files::Existing::Replace : files::Existing::Refuse);
    }

private:
    bool MayReplace(const QString& name)
    {
        const auto question =
            Text({.ger = "%1 gibt es schon. Ersetzen?", .eng = "%1 exists already. Replace it?"}, language_).arg(name);
        QMessageBox box(QMessageBox::Warning, windowTitle(), question, QMessageBox::Cancel, this);
        box.setTextFormat(Qt::PlainText);
        const QAbstractButton* const replace =
            box.addButton(Text({.ger = "Ersetzen", .eng = "Replace"}, language_), QMessageBox::AcceptRole);
        box.setDefaultButton(QMessageBox::Cancel);
        box.exec();
        return box.clickedButton() == replace;
    }

    Language language_;
    SaveFile save_;
};

} // namespace

void AskForFileToOpen(QWidget& window, Language language, const std::filesystem::path& folder,
                      std::function<void(const std::filesystem::path& file)> open)
{
    auto* const dialog = new FileDialog(window, Text({.ger = "Klang öffnen", .eng = "Open a sound"}, language),
                                        platform::FromPath(folder));
    dialog->setFileMode(QFileDialog::ExistingFile);
    QObject::connect(dialog, &QFileDialog::fileSelected, &window,
                     [open = std::move(open)](const QString& file) { open(platform::ToPath(file)); });
    dialog->open();
}

void AskForFileToSave(QWidget& window, Language language, Output output, const std::filesystem::path& suggested,
                      SaveFile save)
{
    const bool isRecording = output == Output::Recording;
    const auto title = isRecording ? Text({.ger = "Aufnahme speichern", .eng = "Save recording"}, language)
                                   : Text({.ger = "Klangdatei speichern", .eng = "Save sound file"}, language);
    auto* const dialog =
        new SaveDialog(window, language, title, platform::FromPath(suggested.parent_path()), std::move(save));
    dialog->setDefaultSuffix(isRecording ? "wav" : "bin");
    dialog->selectFile(platform::FromPath(suggested.filename()));
    dialog->open();
}

} // namespace studio
