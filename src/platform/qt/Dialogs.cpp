#include "platform/Dialogs.h"

#include "platform/qt/EndFileDialog.h"
#include "platform/qt/Paths.h"
#include "platform/qt/QtText.h"

#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QRegularExpression>
#include <QScreen>

#include <algorithm>
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

/// Makes the box as wide as the longest line of its text, as far as the toolkit lets it grow: it would break lines sooner.
void SetWideText(QMessageBox& box, QString text)
{
    box.setText(text);
    auto& label = *box.findChild<QLabel*>("qt_msgbox_label");
    constexpr int kBesideText = 80; // pixels
    const int room = std::min(box.screen()->size().width() - 480, 1000) - kBesideText;
    const int wanted = label.fontMetrics().size(0, text).width();
    label.setMinimumWidth(std::min(room, wanted));
    if (wanted > room) box.setText(text.replace(QRegularExpression("(\\S{30})"), "\\1\u200B")); // where it may break
}

/// The toolkit reads double quotes as a list of names; here they are part of the one name.
class SaveDialog : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

    QString chosen;
    bool stood = false; // something, at the chosen name, and the user agreed that it is replaced

protected:
    void accept() override
    {
        const auto typed = findChild<QLineEdit*>("fileNameEdit")->text();
        const QFileInfo meant(directory(), typed);
        if (!typed.contains('"')) {
            stood = QFileInfo::exists(selectedFiles().value(0));
            QFileDialog::accept();
            if (result() == Accepted) chosen = selectedFiles().constFirst();
            return;
        }
        if (meant.isDir()) return setDirectory(meant.absoluteFilePath());
        const auto question = QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(meant.fileName());
        stood = meant.exists();
        if (stood && QMessageBox::warning(this, windowTitle(), question, QMessageBox::Yes | QMessageBox::No,
                                          QMessageBox::No) != QMessageBox::Yes)
            return;
        chosen = meant.absoluteFilePath();
        QDialog::accept(); // NOLINT(bugprone-parent-virtual-call): the parent's would read the quotes
    }
};

class QtDialogs : public Dialogs {
public:
    void MsgBox(std::string_view utf8) override
    {
        QMessageBox box(MainWindow());
        box.setWindowTitle("Tonfloss");
        box.setTextFormat(Qt::PlainText);
        SetWideText(box, FromUtf8(utf8));
        box.exec();
    }

    std::optional<SaveChoice> ShowModal(const SaveAsDialog& dialog) override
    {
        const std::unique_ptr<SaveDialog, EndFileDialog> asked(new SaveDialog(
            MainWindow(), FromUtf8(dialog.Title), FromPath(dialog.InitialDirectory), FromUtf8(dialog.Filter)));
        auto& files = *asked;
        files.setOption(QFileDialog::DontUseNativeDialog); // the desktop's own has no room for the prompt
        files.setAcceptMode(QFileDialog::AcceptSave);
        files.setFileMode(QFileDialog::AnyFile);
        files.selectFile(FromUtf8(dialog.SuggestedFileName));
        auto* const prompt = new QLabel(FromUtf8(dialog.PromptText));
        prompt->setTextFormat(Qt::PlainText);
        prompt->setContentsMargins(12, 12, 12, 0);
        files.layout()->setMenuBar(prompt); // the layout's own row above all others
        if (files.exec() != QDialog::Accepted) return std::nullopt;
        return SaveChoice{.File = ToPath(files.chosen),
                          .Existing = files.stood ? files::Existing::Replace : files::Existing::Refuse};
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
