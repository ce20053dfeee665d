// A program to drag from: `drag_source [--move] URL...` shows a small window; a press on it begins a drag of the URLs,
// or of a text where none is given. Prints what the target answered, "copy", "move" or "none", and ends. --move offers
// a move only.
#include <QApplication>
#include <QDrag>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

#include <cstdio>

namespace {

class Source : public QLabel {
public:
    Source(const QList<QUrl>& urls, Qt::DropActions actions) : QLabel("Drag"), urls_(urls), actions_(actions)
    {
        setWindowTitle("Drag source");
        setGeometry(20, 40, 120, 60);
    }

private:
    void mousePressEvent(QMouseEvent* /*event*/) override
    {
        auto* const drag = new QDrag(this);
        auto* const mime = new QMimeData;
        if (urls_.isEmpty())
            mime->setText("no file");
        else
            mime->setUrls(urls_);
        drag->setMimeData(mime);
        // The toolkit keeps the drag until the target has fetched the data and said that it is done.
        connect(drag, &QObject::destroyed, QCoreApplication::quit);
        const auto answer = drag->exec(actions_, Qt::MoveAction);
        std::puts(answer == Qt::CopyAction ? "copy" : answer == Qt::MoveAction ? "move" : "none");
        std::fflush(stdout);
    }

    QList<QUrl> urls_;
    Qt::DropActions actions_;
};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    auto arguments = QCoreApplication::arguments().mid(1);
    const bool moveOnly = arguments.removeAll("--move") > 0;
    QList<QUrl> urls;
    for (const auto& argument : arguments)
        urls.append(QUrl(argument));
    Source source(urls, moveOnly ? Qt::DropActions(Qt::MoveAction) : Qt::CopyAction | Qt::MoveAction);
    source.show();
    return QApplication::exec();
}
