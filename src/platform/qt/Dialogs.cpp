#include "Dialogs.h"

#include "Files.h"
#include "Native.h"
#include "QtText.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLayout>
#include <QMainWindow>
#include <QMessageBox>

#include <chrono>

namespace platform {
namespace {

/// The program's window: a box without it would stand anywhere, and often below other programs.
QWidget* MainWindow()
{
    for (auto* const widget : QApplication::topLevelWidgets())
        if (qobject_cast<QMainWindow*>(widget) != nullptr) return widget;
    return nullptr;
}

class QtDialogs : public Dialogs {
public:
    void MsgBox(std::string_view utf8) override
    {
        QMessageBox box(MainWindow());
        box.setWindowTitle("Tonfloss");
        box.setTextFormat(Qt::PlainText);
        box.setText(FromUtf8(utf8));
        box.exec();
    }

    std::optional<std::filesystem::path> ShowModal(const SaveAsDialog& dialog) override
    {
        const std::unique_ptr<QFileDialog, EndFileDialog> files(new QFileDialog(
            MainWindow(), FromUtf8(dialog.Title), ToQString(dialog.InitialDirectory), FromUtf8(dialog.Filter)));
        files->setOption(QFileDialog::DontUseNativeDialog); // the desktop's own has no room for the prompt
        files->setAcceptMode(QFileDialog::AcceptSave);
        files->setFileMode(QFileDialog::AnyFile);
        files->selectFile(FromUtf8(dialog.SuggestedFileName));
        auto* const prompt = new QLabel(FromUtf8(dialog.PromptText));
        prompt->setTextFormat(Qt::PlainText);
        prompt->setContentsMargins(12, 12, 12, 0);
        files->layout()->setMenuBar(prompt); // the layout's own row above all others
        if (files->exec() != QDialog::Accepted) return std::nullopt;
        return ToPath(files->selectedFiles().constFirst());
    }

    void RuntimeBackgroundTask() override
    {
        constexpr std::chrono::milliseconds kPause{20};
        const auto now = std::chrono::steady_clock::now();
        if (now - last_ < kPause) return;
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        last_ = std::chrono::steady_clock::now();
    }

private:
    std::chrono::steady_clock::time_point last_;
};

} // namespace

std::unique_ptr<Dialogs> MakeDialogs()
{
    return std::make_unique<QtDialogs>();
}

std::string FilterText(const FileType& type)
{
    return std::string(type.Name) + " (*" + std::string(type.Extensions) + ")";
}

} // namespace platform
