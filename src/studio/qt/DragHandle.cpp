#include "studio/qt/DragHandle.h"

#include "platform/qt/Paths.h"

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

namespace studio {

DragHandle::DragHandle(Studio& studio, const QString& text) : QPushButton(text), studio_(studio)
{
    setCursor(Qt::OpenHandCursor);
    setFlat(true);
    setStyleSheet("QPushButton { border: 1px dashed palette(button-text); border-radius: 4px; padding: 4px; }");
}

void DragHandle::mousePressEvent(QMouseEvent* event)
{
    QPushButton::mousePressEvent(event);
    pressedAt_ = event->position().toPoint();
    if (event->button() == Qt::LeftButton) studio_.WantDragFile(); // it is there when the drag begins
}

void DragHandle::mouseMoveEvent(QMouseEvent* event)
{
    const bool isDrag =
        (event->buttons() & Qt::LeftButton) != 0 &&
        (event->position().toPoint() - pressedAt_).manhattanLength() >= QApplication::startDragDistance();
    const auto file = studio_.Now().dragFile; // the drag below lets other events come, which may change it
    if (!isDrag || file.empty()) return;
    auto* const dragged = new QMimeData; // the drag's
    dragged->setUrls({QUrl::fromLocalFile(platform::FromPath(file))});
    auto* const drag = new QDrag(this); // the toolkit's
    drag->setMimeData(dragged);
    drag->setPixmap(QApplication::windowIcon().pixmap(32));
    setDown(false);
    drag->exec(Qt::CopyAction);
}

} // namespace studio
