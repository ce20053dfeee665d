// EditMenu.h: the items that work on the text that has the focus.
#pragma once

#include "platform/Menu.h"

#include <QAction>
#include <QMenu>
#include <QMimeData>

#include <functional>

namespace platform {

/// Takes the file that the clipboard holds, and the turn that it needs.
using PasteFile = std::function<void(const QMimeData&)>;

/// Makes `item` do its command on the focused text, and enables it just when it can, each time `menu` opens. Requires:
/// gate and `pasteFile` outlive the item.
void ConnectEditItem(QAction& item, MenuAction action, EventGate& gate, const PasteFile& pasteFile, QMenu& menu);

} // namespace platform
