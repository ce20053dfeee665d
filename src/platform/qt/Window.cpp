#include "WindowImpl.h"

#include "MenuImpl.h"
#include "Native.h"
#include "QtText.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QLayout>
#include <QMetaObject>
#include <QMimeData>
#include <QSysInfo>
#include <QUrl>

#include <optional>
#include <utility>

namespace platform {
namespace {

/// The events of a drag, as the window's own class meets them.
struct DragHandlers {
    std::function<bool()> enter;
    std::function<bool()> over;
    std::function<void()> exit;
    std::function<void(const DragItem&)> drop;
};

/// The path as bytes, so that a name which isn't valid UTF-8 still opens; none for what is no file of this machine.
std::optional<std::filesystem::path> LocalPath(const QUrl& url)
{
    const auto host = url.host();
    const bool thisMachine = host.isEmpty() || host == "localhost" || host == QSysInfo::machineHostName().toLower();
    if (!url.isLocalFile() || !thisMachine) return std::nullopt;
#ifdef Q_OS_WIN
    return ToPath(url.toLocalFile());
#else
    const auto encoded = url.adjusted(QUrl::StripTrailingSlash).path(QUrl::FullyEncoded);
    return QByteArray::fromPercentEncoding(encoded.toLatin1()).toStdString();
#endif
}

class MainWidget : public QMainWindow {
public:
    MainWidget(EventGate& gate, DragHandlers handlers) : gate_(gate), handlers_(std::move(handlers)) {}

private:
    void dragEnterEvent(QDragEnterEvent* event) override
    {
        Answer(*event, event->mimeData()->hasUrls(), handlers_.enter);
    }

    void dragMoveEvent(QDragMoveEvent* event) override { Answer(*event, true, handlers_.over); }

    void dragLeaveEvent(QDragLeaveEvent* /*event*/) override { gate_.Run(handlers_.exit); }

    void dropEvent(QDropEvent* event) override
    {
        Answer(*event, true, [] { return false; });
        if (!event->isAccepted()) return;
        const auto urls = event->mimeData()->urls();
        auto path = urls.isEmpty() ? std::nullopt : LocalPath(urls.constFirst());
        // Queued: the program that the file comes from waits for the end of this event.
        QMetaObject::invokeMethod(
            this, [this, path = std::move(path)] { gate_.Run([&] { Drop(path); }); }, Qt::QueuedConnection);
    }

    void closeEvent(QCloseEvent* event) override { event->setAccepted(!gate_.Busy()); }

    /// Accepts a drag as a copy, or as nothing where its source can't copy: after a move the source would delete the
    /// user's file.
    void Answer(QDropEvent& event, bool wanted, const std::function<bool()>& refuses)
    {
        bool refused = true;
        if (wanted) gate_.Run([&] { refused = refuses(); });
        event.setDropAction(event.possibleActions() & Qt::CopyAction ? Qt::CopyAction : Qt::IgnoreAction);
        event.setAccepted(!refused);
    }

    void Drop(const std::optional<std::filesystem::path>& path)
    {
        DragItem item;
        if (path) item.FolderItem = FolderItemAt(*path);
        handlers_.drop(item);
    }

    EventGate& gate_;
    DragHandlers handlers_;
};

} // namespace

Window::Window(EventGate& gate, MenuBar& menuBar, const WindowRow& row)
{
    auto widget =
        std::make_unique<MainWidget>(gate, DragHandlers{
                                               .enter = [this] { return Event_DragEnter(); },
                                               .over = [this] { return Event_DragOver(); },
                                               .exit = [this] { Event_DragExit(); },
                                               .drop = [this](const DragItem& item) { Event_DropObject(item); },
                                           });
    // The area below the menu bar has the fixed size; the window's own would count the menu bar in.
    auto* const client = new QWidget;
    client->setFixedSize(row.width, row.height);
    widget->setCentralWidget(client);
    widget->setMenuBar(menuBar.impl_->widget);
    widget->layout()->setSizeConstraint(QLayout::SetFixedSize);
    impl_ = std::make_unique<Impl>(Impl{.gate = gate, .widget = std::move(widget)});
    SetTitle(row.title);
}

Window::~Window() = default;

EventGate& Window::Gate() const
{
    return impl_->gate;
}

std::string Window::Title() const
{
    return impl_->widget->windowTitle().replace("[*][*]", "[*]").toStdString();
}

void Window::SetTitle(std::string_view utf8)
{
    impl_->widget->setWindowTitle(FromUtf8(utf8).replace("[*]", "[*][*]")); // alone it is the toolkit's own mark
}

void Window::SetLeft(int left)
{
    auto place = impl_->widget->geometry();
    place.moveLeft(left);
    impl_->widget->setGeometry(place);
}

void Window::SetTop(int top)
{
    auto place = impl_->widget->geometry();
    place.moveTop(top);
    impl_->widget->setGeometry(place);
}

void Window::AcceptFileDrop()
{
    impl_->widget->setAcceptDrops(true);
}

void Window::Invalidate()
{
    impl_->widget->update();
}

void Window::Show()
{
    impl_->widget->show();
}

} // namespace platform
