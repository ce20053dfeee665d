// Window.h: a window of fixed size that takes dropped files.
#pragma once

#include "platform/EventGate.h"
#include "platform/FolderItem.h"
#include "platform/Menu.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

/// The area of the window below its menu bar, in the toolkit's units.
struct WindowRow {
    int width;
    int height;
    std::string_view title;
};

/// Drags, drops, pasted files and close requests take a turn at the gate: what comes while another event is under way
/// is refused. Other events of the toolkit, such as painting, go on.
class Window {
public:
    Window(EventGate& gate, MenuBar& menuBar, const WindowRow& row);
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Where the controls' events take their turns, too.
    [[nodiscard]] EventGate& Gate() const;

    [[nodiscard]] const std::string& Title() const;
    void SetTitle(std::string_view utf8);

    /// Where the window without its frame stands on the screen. Requires: the window isn't shown yet.
    void SetLeft(int left);
    void SetTop(int top);

    /// Dragged files reach the events below from now on, as copies or links: no drag ever takes the user's file away.
    void AcceptFileDrop();

    /// Asks for a repaint at the next opportunity and doesn't wait for it.
    void Invalidate();

    void Show();

protected:
    virtual bool Event_DragEnter() = 0; // true refuses the drag
    virtual bool Event_DragOver() = 0;  // true refuses the drop here
    virtual void Event_DragExit() = 0;
    /// Comes when the drag is over, so that the program it came from isn't held up; also after the two above, for a
    /// file that is pasted.
    virtual void Event_DropObject(const DragItem& item) = 0;

    /// Does `work` in a thread, since a file system may answer late or never, and returns when it is over. Throws what
    /// the work throws. False: the user has closed the window, and the work may go on for as long as the program does.
    /// So it has nothing but what is its own. Requires: a turn at the gate, which keeps all else from the window.
    [[nodiscard]] bool WaitFor(std::function<void()> work);

private:
    friend class Control;
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace platform
