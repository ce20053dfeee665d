// MenuImpl.h: what MenuBar, its items and the window share behind their headers.
#pragma once

#include "platform/qt/EditMenu.h"

#include <QMenuBar>
#include <QPointer>

namespace platform {

struct MenuBar::Impl {
    EventGate& gate;
    QPointer<QMenuBar> widget; // taken over by the window that shows it
    PasteFile pasteFile = {};  // the window's
};

} // namespace platform
