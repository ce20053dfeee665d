// WindowImpl.h: what the window and its controls share behind their headers.
#pragma once

#include "platform/Window.h"

#include <QFutureWatcher>
#include <QList>
#include <QMainWindow>
#include <QUrl>

#include <chrono>
#include <functional>
#include <future>
#include <optional>

class QDropEvent;
class QMimeData;

namespace platform {

/// The toolkit's window. Each of its events takes its turn at the gate and goes to the members of `Window`.
struct Window::Impl : QMainWindow {
    Impl(Window& window, EventGate& eventGate);

    /// As if the file that `copied` holds were dragged over the window and dropped.
    void Paste(const QMimeData& copied);

    [[nodiscard]] bool WaitFor(std::function<void()> work);

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
    /// The drag that is over the window, or seemed to have ended there.
    struct Drag {
        QList<QUrl> urls;
        std::shared_future<DragItem> noted; // as it was when the drag came over the window
        bool pointerIsBack = false;
    };

    void Answer(QDropEvent& event, const std::function<bool()>& takes);
    [[nodiscard]] bool IsOf(const QDropEvent& event) const;
    [[nodiscard]] bool BeginDrag(const QDropEvent& event);
    [[nodiscard]] bool DragOver(const QDropEvent& event);
    void EndDrag();
    void DropWhenRead(EventGate::Turn turn, std::shared_future<DragItem> noted, std::chrono::milliseconds hover = {});

    void KeepTitleBarOnScreen();

    Window& window_;
    std::optional<Drag> drag_;
    EventGate::Turn waiting_; // of the drop whose file is being read
    QFutureWatcher<DragItem> file_;
    bool waitsForWork_ = false;
    bool isExposed_ = false;
};

} // namespace platform
