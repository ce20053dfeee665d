// EditMenu.h: the items that work on the text that has the focus.
#pragma once

#include "Menu.h"

#include <QAction>
#include <QMenu>

namespace platform {

/// Makes `item` do its command on the focused text, and enables it just when it can, each time `menu` opens.
void ConnectEditItem(QAction& item, MenuAction action, EventGate& gate, QMenu& menu);

} // namespace platform
