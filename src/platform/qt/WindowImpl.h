// WindowImpl.h: what the window and its controls share behind their headers.
#pragma once

#include "Window.h"

#include <QMainWindow>

namespace platform {

struct Window::Impl {
    EventGate& gate;
    std::unique_ptr<QMainWindow> widget;
};

} // namespace platform
