// MenuImpl.h: what MenuBar, its items and the window share behind their headers.
#pragma once

#include "Menu.h"

#include <QAction>
#include <QMenuBar>
#include <QPointer>

namespace platform {

struct MenuBar::Impl {
    EventGate& gate;
    QPointer<QMenuBar> widget; // taken over by the window that shows it
};

} // namespace platform
