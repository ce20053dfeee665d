// WindowImpl.h: what the window and its controls share behind their headers.
#pragma once

#include "platform/Window.h"

#include <QList>
#include <QMainWindow>
#include <QUrl>

class QDropEvent;

namespace platform {

/// The toolkit's window. Each of its events takes its turn at the gate and goes to the members of `Window`.
struct Window::Impl : QMainWindow {
    Impl(Window& window, EventGate& eventGate) : gate(eventGate), window_(window) {}

    EventGate& gate;
    std::string title;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void Answer(QDropEvent& event, const std::function<bool()>& takes);
    [[nodiscard]] bool IsOf(const QDropEvent& event) const;
    [[nodiscard]] bool BeginDrag(const QDropEvent& event);
    [[nodiscard]] bool DragOver(const QDropEvent& event);
    void EndDrag();

    Window& window_;
    bool dragInside_ = false;
    QList<QUrl> urls_; // of the drag
    DragItem item_;    // as it was when the drag came over the window
};

} // namespace platform
