#include "platform/qt/EditMenu.h"

#include "platform/qt/DraggedFile.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>

namespace platform {
namespace {

/// The text that the user is in. The menu bar takes the focus while it is used by keyboard; that doesn't count.
QWidget* FocusedText()
{
    static QPointer<QWidget> before;
    static const auto connection =
        QObject::connect(qApp, &QApplication::focusChanged, [](QWidget* old, const QWidget* now) {
            if (qobject_cast<const QMenuBar*>(now) != nullptr) before = old;
        });
    auto* const focused = QApplication::focusWidget();
    return qobject_cast<QMenuBar*>(focused) != nullptr ? before.data() : focused;
}

bool CanEdit(const QLineEdit& field, MenuAction action)
{
    switch (action) {
    case MenuAction::Undo: return field.isUndoAvailable();
    case MenuAction::Paste: return !QApplication::clipboard()->text().isEmpty();
    case MenuAction::SelectAll: return !field.text().isEmpty();
    default: return field.hasSelectedText();
    }
}

void Edit(QLineEdit& field, MenuAction action)
{
    switch (action) {
    case MenuAction::Undo: return field.undo();
    case MenuAction::Cut: return field.cut();
    case MenuAction::Copy: return field.copy();
    case MenuAction::Paste: return field.paste();
    case MenuAction::SelectAll: return field.selectAll();
    default: return field.del();
    }
}

/// Read-only: it can be selected and copied.
bool CanEdit(const QPlainTextEdit& area, MenuAction action)
{
    if (action == MenuAction::SelectAll) return !area.document()->isEmpty();
    return action == MenuAction::Copy && area.textCursor().hasSelection();
}

void Edit(QPlainTextEdit& area, MenuAction action)
{
    if (action == MenuAction::SelectAll)
        area.selectAll();
    else
        area.copy();
}

/// Somebody copied a file, in a file manager for example. Nobody asks the file itself.
bool ClipboardHoldsFile()
{
    return DraggedPath(QApplication::clipboard()->mimeData()).has_value();
}

bool CanEditFocusedText(MenuAction action)
{
    auto* const text = FocusedText();
    if (const auto* const field = qobject_cast<QLineEdit*>(text)) return CanEdit(*field, action);
    if (const auto* const area = qobject_cast<QPlainTextEdit*>(text)) return CanEdit(*area, action);
    return false;
}

void EditFocusedText(MenuAction action)
{
    if (!CanEditFocusedText(action)) return;
    auto* const text = FocusedText();
    if (auto* const field = qobject_cast<QLineEdit*>(text)) Edit(*field, action);
    if (auto* const area = qobject_cast<QPlainTextEdit*>(text)) Edit(*area, action);
}

} // namespace

void ConnectEditItem(QAction& item, MenuAction action, EventGate& gate, const PasteFile& pasteFile, QMenu& menu)
{
    FocusedText(); // follows the focus from now on
    QObject::connect(&menu, &QMenu::aboutToShow, &item, [&item, action] {
        const bool file = action == MenuAction::Paste && ClipboardHoldsFile();
        item.setEnabled(file || CanEditFocusedText(action));
    });
    // A shortcut works without the menu having been opened, so a disabled item must not stand in its way.
    QObject::connect(&menu, &QMenu::aboutToHide, &item, [&item] { item.setEnabled(true); });
    QObject::connect(&item, &QAction::triggered, [&gate, &pasteFile, action] {
        if (action == MenuAction::Paste && ClipboardHoldsFile())
            pasteFile(*QApplication::clipboard()->mimeData());
        else
            gate.Run([action] { EditFocusedText(action); });
    });
}

} // namespace platform
