// The least that a program with a window of this toolkit can be: what our start is held against.
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu("File")->addAction("Quit");
    auto* const client = new QWidget;
    client->setFixedSize(600, 451);
    (new QLabel("A label", client))->setGeometry(20, 20, 200, 20);
    (new QLineEdit(client))->setGeometry(20, 60, 200, 22);
    window.setCentralWidget(client);
    window.show();
    return QApplication::exec();
}
