#include "platform/qt/Keys.h"

#include <QKeyEvent>

namespace platform {

void IgnoreRepeatedKeys(QCoreApplication& application)
{
    class Filter : public QObject {
        bool eventFilter(QObject* /*object*/, QEvent* event) override
        {
            const auto type = event->type();
            if (type != QEvent::KeyPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride)
                return false;
            const auto& key = *static_cast<QKeyEvent*>(event);
            if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter && !key.matches(QKeySequence::Paste))
                return false;
            // Under X11 the toolkit misses many. They come in the same millisecond as the release before them.
            if (type == QEvent::KeyRelease) released_ = key.timestamp();
            const bool isRepeated = key.isAutoRepeat() || (key.timestamp() != 0 && key.timestamp() == released_);
            if (type == QEvent::KeyRelease || !isRepeated) return false;
            event->accept(); // no shortcut takes it either
            return true;
        }

        quint64 released_ = 0;
    };
    static Filter filter;
    application.installEventFilter(&filter);
}

} // namespace platform
