#include "platform/Dialogs.h"

#include "platform/Texts.h"
#include "platform/qt/EndFileDialog.h"
#include "platform/qt/Paths.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontMetrics>
#include <QHeaderView>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QScreen>
#include <QScrollBar>
#include <QTreeView>

#include <algorithm>
#include <cassert>
#include <chrono>
#include <system_error>

namespace platform {
namespace {

/// The program's window: a box without it would stand anywhere, and often below other programs.
QWidget* MainWindow()
{
    for (auto* const widget : QApplication::topLevelWidgets())
        if (qobject_cast<QMainWindow*>(widget) != nullptr) return widget;
    return nullptr;
}

/// What the toolkit keeps to itself: a part of one of its dialogs, by the name that it has in Qt 6.4. These are needed:
/// "qt_msgbox_label", "fileNameEdit", "treeView".
template <class Part>
Part& PartOf(const QDialog& dialog, const char* name)
{
    auto* const part = dialog.findChild<Part*>(name);
    assert(part != nullptr);
    return *part;
}

/// The widest line that the toolkit lets a box show, in pixels.
int WidestLine(const QScreen& screen)
{
    constexpr int kBesideText = 160; // margins and a symbol
    const int width = screen.size().width();
    return (width <= 1024 ? width : std::min(width - 480, 1000)) - kBesideText;
}

/// Shows its text letter for letter, and is as wide as the longest line, as far as the toolkit lets it grow: it would
/// break lines sooner.
class Box : public QMessageBox {
public:
    Box(QWidget* parent, const QString& title, const QString& text) : QMessageBox(parent)
    {
        setWindowTitle(title);
        setTextFormat(Qt::PlainText);
        setText(text);
        auto& label = PartOf<QLabel>(*this, "qt_msgbox_label");
        label.setMinimumWidth(std::min(WidestLine(*screen()), label.fontMetrics().size(0, text).width()));
    }
};

class SaveDialog : public QFileDialog {
public:
    SaveDialog(QWidget* parent, const SaveAsDialog& asked)
        : QFileDialog(parent, QString::fromUtf8(asked.Title), FromPath(asked.InitialDirectory),
                      QString::fromUtf8(asked.Filter))
    {
        setOption(DontUseNativeDialog);  // the desktop's own has no room for the prompt
        setOption(DontConfirmOverwrite); // the question below asks
        setAcceptMode(AcceptSave);
        setFileMode(AnyFile);
        selectFile(QString::fromUtf8(asked.SuggestedFileName));
        auto* const prompt = new QLabel(QString::fromUtf8(asked.PromptText));
        prompt->setTextFormat(Qt::PlainText);
        prompt->setContentsMargins(12, 12, 12, 0);
        layout()->setMenuBar(prompt); // the layout's own row above all others
        // A file that is dragged onto a folder here would be moved.
        for (auto* const view : findChildren<QAbstractItemView*>())
            view->setDragDropMode(QAbstractItemView::NoDragDrop);
    }

    SaveChoice chosen;

protected:
    // As wide as the columns of the list, which grow with the desktop's font and language, and a scroll bar beside
    // them.
    void showEvent(QShowEvent* event) override
    {
        const auto& list = PartOf<QTreeView>(*this, "treeView");
        const int columns = list.header()->length() + list.verticalScrollBar()->sizeHint().width();
        const int missing = columns - list.viewport()->width();
        if (missing > 0) resize(std::min(width() + missing, screen()->availableSize().width()), height());
        QFileDialog::showEvent(event);
    }

    void accept() override
    {
        // The toolkit reads double quotes as a list of names; here they are part of the one name.
        const auto typed = PartOf<QLineEdit>(*this, "fileNameEdit").text();
        const bool quoted = typed.contains('"');
        const QFileInfo meant(directory(), quoted ? typed : selectedFiles().value(0));
        if (quoted && meant.isDir()) return setDirectory(meant.absoluteFilePath());
        if (!meant.isDir() && !MayBeMade(meant)) return;
        chosen.File = ToPath(meant.absoluteFilePath());
        if (quoted)
            QDialog::accept(); // NOLINT(bugprone-parent-virtual-call): the parent's would read the quotes
        else
            QFileDialog::accept();
    }

private:
    bool MayBeMade(const QFileInfo& file)
    {
        constexpr std::size_t kLongest = 255; // in the units of the system, on all its usual file systems
        const auto name = QString::fromStdString(ShownName(file.fileName().toStdString()));
        if (ToPath(file.fileName()).native().size() > kLongest) {
            const auto reason = QString::fromStdString(ErrorText(std::make_error_code(std::errc::filename_too_long)));
            Box(this, windowTitle(), name + ": " + reason).exec();
            return false;
        }
        chosen.Existing = file.exists() ? files::Existing::Replace : files::Existing::Refuse;
        if (chosen.Existing == files::Existing::Refuse) return true;
        Box question(this, windowTitle(), tr("%1 already exists.\nDo you want to replace it?").arg(name));
        question.setIcon(QMessageBox::Warning);
        question.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        question.setDefaultButton(QMessageBox::No);
        return question.exec() == QMessageBox::Yes;
    }
};

class QtDialogs : public Dialogs {
public:
    void MsgBox(std::string_view utf8) override { Box(MainWindow(), "Tonfloss", QString::fromUtf8(utf8)).exec(); }

    std::optional<SaveChoice> ShowModal(const SaveAsDialog& dialog) override
    {
        const std::unique_ptr<SaveDialog, EndFileDialog> asked(new SaveDialog(MainWindow(), dialog));
        if (asked->exec() != QDialog::Accepted) return std::nullopt;
        return asked->chosen;
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

std::string ShownName(std::string_view utf8)
{
    auto name = QString::fromUtf8(utf8);
    for (auto& each : name) {
        const int code = each.unicode();
        const bool breaksLines = (code >= 0x80 && code < 0xA0) || (code >= 0x2028 && code <= 0x202E) ||
                                 (code >= 0x2066 && code <= 0x2069); // or turns the direction round
        if (code < 0x20) each = QChar(0x2400 + code);                // the picture of that character
        if (code == 0x7F) each = QChar(0x2421);
        if (breaksLines) each = QChar::ReplacementCharacter;
    }
    const QFontMetrics metrics(QApplication::font("QLabel"));
    const int room = WidestLine(*QGuiApplication::primaryScreen()) - metrics.horizontalAdvance(": ");
    return metrics.elidedText(name, Qt::ElideMiddle, room).toStdString();
}

std::string FilterText(const FileType& type)
{
    return std::string(type.Name) + " (*" + std::string(type.Extensions) + ")";
}

} // namespace platform
