#include "platform/qt/WindowImpl.h"

#include "platform/qt/DraggedFile.h"
#include "platform/qt/MenuImpl.h"
#include "platform/qt/QtText.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QLayout>
#include <QMetaObject>
#include <QMimeData>
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
    EndDrag();
}

// The drop has its turn from its answer on, and works when its event is over: the program that the file comes from waits
// for that.
void Window::Impl::dropEvent(QDropEvent* event)
{
    auto turn = gate.TakeTurn();
    const auto action = ActionFor(event->possibleActions());
    bool wanted = false;
    if (turn && action != Qt::IgnoreAction) turn.Run([&] { wanted = IsOf(*event) || DragOver(*event); });
    event->setDropAction(action);
    event->setAccepted(wanted);
    if (!event->isAccepted()) return;
    dragInside_ = false;
    auto work = [this, turn = std::move(turn)] { turn.Run([this] { window_.Event_DropObject(item_); }); };
    QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
}

void Window::Impl::closeEvent(QCloseEvent* event)
{
    event->setAccepted(static_cast<bool>(gate.TakeTurn()));
}

void Window::Impl::showEvent(QShowEvent* /*event*/)
{
    windowHandle()->installEventFilter(this);
}

// If the program that the file comes from has died, nobody says that the drag is over, but the pointer is back.
bool Window::Impl::eventFilter(QObject* /*object*/, QEvent* event)
{
    const bool moved = event->type() == QEvent::MouseMove;
    if (moved && static_cast<QMouseEvent*>(event)->buttons() == Qt::NoButton) EndDrag(); // NOLINT: the type tells
    return false;
}

/// Whether the drag that is over the window is the one of `event`. A source that has ended at the drop gives nothing any
/// more.
bool Window::Impl::IsOf(const QDropEvent& event) const
{
    const auto urls = event.mimeData()->urls();
    return dragInside_ && (urls == urls_ || (urls.isEmpty() && event.mimeData()->hasUrls()));
}

bool Window::Impl::BeginDrag(const QDropEvent& event)
{
    urls_ = event.mimeData()->urls();
    item_ = DraggedFile(event.mimeData());
    dragInside_ = !urls_.isEmpty();
    return dragInside_ && !window_.Event_DragEnter();
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
    if (!dragInside_) return;
    gate.Run([this] {
        dragInside_ = false;
        window_.Event_DragExit();
    });
}

Window::Window(EventGate& gate, MenuBar& menuBar, const WindowRow& row) : impl_(std::make_unique<Impl>(*this, gate))
{
    // The area below the menu bar has the fixed size; the window's own would count the menu bar in.
    auto* const client = new QWidget;
    client->setFixedSize(row.width, row.height);
    impl_->setCentralWidget(client);
    impl_->setMenuBar(menuBar.impl_->widget);
    impl_->layout()->setSizeConstraint(QLayout::SetFixedSize);
    menuBar.impl_->pasteFile = [this](const DragItem& item) {
        Event_DragEnter();
        Event_DragOver();
        Event_DropObject(item);
    };
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
    const auto shown = FromUtf8(utf8).replace("[*]", "[*][*]"); // alone it is the toolkit's own mark
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

void Window::Show()
{
    impl_->show();
}

} // namespace platform
