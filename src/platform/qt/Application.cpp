#include "Application.h"

#include <QApplication>
#include <QIcon>
#include <QScreen>
#include <QSettings>

namespace platform {

struct Application::Impl {
    Impl(int& argc, char** argv) : application(argc, argv) {}

    QApplication application;
};

// No display name is set: the toolkit would append it to every window title.
Application::Application(int& argc, char** argv)
{
    // The toolkit's file dialog would keep its state from one run to the next.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
    QCoreApplication::setApplicationName("tonfloss");
    QCoreApplication::setApplicationVersion(TONFLOSS_VERSION);
    impl_ = std::make_unique<Impl>(argc, argv);
    QGuiApplication::setDesktopFileName("org.tonfloss.Tonfloss");
    // After the first frame, which doesn't need it: the icon has to be drawn in several sizes.
    QMetaObject::invokeMethod(
        qApp, [] { QApplication::setWindowIcon(QIcon(":/tonfloss.svg")); }, Qt::QueuedConnection);
}

Application::~Application() = default;

int Application::Run()
{
    return QApplication::exec();
}

ScreenSize FirstScreen()
{
    const auto size = QGuiApplication::screens().constFirst()->size();
    return {.Width = size.width(), .Height = size.height()};
}

} // namespace platform
