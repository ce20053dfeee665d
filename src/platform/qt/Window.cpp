#include "platform/qt/WindowImpl.h"

#include "platform/qt/DraggedFile.h"
#include "platform/qt/FileThread.h"
#include "platform/qt/MenuImpl.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QLayout>
#include <QMimeData>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace platform {
namespace {

/// What a drag is answered with. Never with a move, also where the source can do nothing else: it would delete the
/// user's file afterwards.
Qt::DropAction ActionFor(Qt::DropActions possible)
{
    if (possible & Qt::CopyAction) return Qt::CopyAction;
    return possible & Qt::LinkAction ? Qt::LinkAction : Qt::IgnoreAction;
}

} // namespace

Window::Impl::Impl(Window& window, EventGate& eventGate) : gate(eventGate), window_(window)
{
    connect(&file_, &QFutureWatcherBase::finished, this, [this] {
        const auto turn = std::move(waiting_);
        if (turn) turn.Run([this] { window_.Event_DropObject(file_.result()); });
    });
}

void Window::Impl::dragEnterEvent(QDragEnterEvent* event)
{
    Answer(*event, [&] { return BeginDrag(*event); });
}

// A drag behind one whose source has died comes without entering.
void Window::Impl::dragMoveEvent(QDragMoveEvent* event)
{
    Answer(*event, [&] { return DragOver(*event); });
}

void Window::Impl::dragLeaveEvent(QDragLeaveEvent* /*event*/)
{
    gate.Run([this] { EndDrag(); });
}

// The drop has its turn from its answer on, and works when its event is over and the file has been read: the program
// that the file comes from waits for neither.
void Window::Impl::dropEvent(QDropEvent* event)
{
    auto turn = gate.TakeTurn();
    const auto action = ActionFor(event->possibleActions());
    bool wanted = false;
    if (turn && action != Qt::IgnoreAction) turn.Run([&] { wanted = DragOver(*event); });
    event->setDropAction(action);
    event->setAccepted(wanted);
    if (!event->isAccepted()) return;
    DropWhenRead(std::move(turn), std::exchange(drag_, std::nullopt)->noted);
}

void Window::Impl::Paste(const QMimeData& copied)
{
    // Like a quick drag: a file that is being written changes meanwhile.
    constexpr std::chrono::milliseconds kHover{300};
    auto turn = gate.TakeTurn();
    std::shared_future<DragItem> noted;
    if (turn)
        turn.Run([&] {
            window_.Event_DragEnter();
            window_.Event_DragOver();
            noted = Note(DraggedPath(&copied));
        });
    if (noted.valid()) DropWhenRead(std::move(turn), std::move(noted), kHover);
}

void Window::Impl::DropWhenRead(EventGate::Turn turn, std::shared_future<DragItem> noted,
                                std::chrono::milliseconds hover)
{
    bool reads = false;
    turn.Run([&] {
        file_.setFuture(Read(std::move(noted), hover));
        reads = true;
    });
    if (reads) waiting_ = std::move(turn);
}

// The thread, which has no descriptor, can't wake the toolkit: it is asked.
bool Window::Impl::WaitFor(std::function<void()> work)
{
    constexpr std::chrono::milliseconds kPause{20};
    const auto done = InFileThread(std::move(work));
    waitsForWork_ = true;
    while (done.wait_for(kPause) != std::future_status::ready) {
        QCoreApplication::processEvents();
        if (!waitsForWork_) return false;
    }
    waitsForWork_ = false;
    done.get();
    return true;
}

// A file that doesn't answer keeps nobody from closing the window. Nothing is done with it any more.
void Window::Impl::closeEvent(QCloseEvent* event)
{
    const auto turn = waiting_ ? std::move(waiting_) : gate.TakeTurn();
    event->setAccepted(turn || std::exchange(waitsForWork_, false));
}

void Window::Impl::showEvent(QShowEvent* /*event*/)
{
    windowHandle()->installEventFilter(this);
}

// The window is as high as it is: on a low screen its middle may be the screen's, and its title bar above it.
void Window::Impl::KeepTitleBarOnScreen()
{
    const int hidden = screen()->availableGeometry().top() - frameGeometry().top();
    if (hidden > 0) move(x(), y() + hidden);
}

// If the program that the file comes from has died, nobody says that the drag is over, but the pointer is back.
bool Window::Impl::eventFilter(QObject* /*object*/, QEvent* event)
{
    // Its frame isn't known before. Later the user may want it there.
    if (event->type() == QEvent::Expose && !std::exchange(isExposed_, true)) KeepTitleBarOnScreen();
    const bool isBack = event->type() == QEvent::Enter || event->type() == QEvent::MouseMove;
    if (isBack && drag_ && !drag_->pointerIsBack)
        gate.Run([this] {
            drag_->pointerIsBack = true;
            window_.Event_DragExit();
        });
    return false;
}

/// Whether the drag of `event` is the one that came over the window. Some programs give the pointer back before they
/// drop. One that has ended at the drop gives no address any more.
bool Window::Impl::IsOf(const QDropEvent& event) const
{
    const bool isDrop = event.type() == QEvent::Drop;
    if (!drag_ || (drag_->pointerIsBack && !isDrop)) return false;
    const auto urls = event.mimeData()->urls();
    const bool hasEnded = isDrop && !drag_->pointerIsBack && urls.isEmpty() && event.mimeData()->hasUrls();
    return hasEnded || urls == drag_->urls;
}

bool Window::Impl::BeginDrag(const QDropEvent& event)
{
    EndDrag();
    const auto urls = event.mimeData()->urls();
    if (urls.isEmpty()) return false;
    drag_ = Drag{.urls = urls, .noted = Note(DraggedPath(event.mimeData()))};
    return !window_.Event_DragEnter();
}

bool Window::Impl::DragOver(const QDropEvent& event)
{
    return (IsOf(event) || BeginDrag(event)) && !window_.Event_DragOver();
}

/// `takes` runs in a turn of its own and says whether the drag is wanted.
void Window::Impl::Answer(QDropEvent& event, const std::function<bool()>& takes)
{
    const auto action = ActionFor(event.possibleActions());
    bool taken = false;
    if (action != Qt::IgnoreAction) gate.Run([&] { taken = takes(); });
    event.setDropAction(action);
    event.setAccepted(taken);
}

void Window::Impl::EndDrag()
{
    const auto ended = std::exchange(drag_, std::nullopt);
    if (ended && !ended->pointerIsBack) window_.Event_DragExit();
}

Window::Window(EventGate& gate, MenuBar& menuBar, const WindowRow& row) : impl_(std::make_unique<Impl>(*this, gate))
{
    // The area below the menu bar has the fixed size; the window's own would count the menu bar in.
    auto* const client = new QWidget;
    client->setFixedSize(row.width, row.height);
    impl_->setCentralWidget(client);
    impl_->setMenuBar(menuBar.impl_->widget);
    impl_->layout()->setSizeConstraint(QLayout::SetFixedSize);
    menuBar.impl_->pasteFile = [this](const QMimeData& copied) { impl_->Paste(copied); };
    SetTitle(row.title);
}

Window::~Window() = default;

EventGate& Window::Gate() const
{
    return impl_->gate;
}

const std::string& Window::Title() const
{
    return impl_->title;
}

void Window::SetTitle(std::string_view utf8)
{
    impl_->title = utf8;
    const QString blank(" "); // for an empty title the toolkit would show the program's name
    const auto shown = QString::fromUtf8(utf8).replace("[*]", "[*][*]"); // alone it is the toolkit's own mark
    impl_->setWindowTitle(shown.isEmpty() ? blank : shown);
}

void Window::SetLeft(int left)
{
    auto place = impl_->geometry();
    place.moveLeft(left);
    impl_->setGeometry(place);
}

void Window::SetTop(int top)
{
    auto place = impl_->geometry();
    place.moveTop(top);
    impl_->setGeometry(place);
}

void Window::AcceptFileDrop()
{
    impl_->setAcceptDrops(true);
}

void Window::Invalidate()
{
    impl_->update();
}

bool Window::WaitFor(std::function<void()> work)
{
    return impl_->WaitFor(std::move(work));
}

void Window::Show()
{
    impl_->show();
}

} // namespace platform
