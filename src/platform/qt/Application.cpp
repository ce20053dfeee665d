#include "platform/Application.h"

#include "platform/qt/Keys.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QScreen>
#include <QSettings>
#include <QTranslator>

#include <array>

namespace platform {

struct Application::Impl {
    explicit Impl(char* programName) : arguments{programName, nullptr}, application(argumentCount, arguments.data())
    {
        // The toolkit's translations bring the direction of their language along, and the window would be mirrored.
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        IgnoreRepeatedKeys(application);
        // The toolkit's own words, such as those of its dialogs' buttons, in the language of the desktop.
        if (translator.load(QLocale::system(), "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&translator);
    }

    int argumentCount = 1; // the toolkit would act on more, and keeps a reference
    std::array<char*, 2> arguments;
    QApplication application;
    QTranslator translator;
};

// No display name is set: the toolkit would append it to every window title.
Application::Application(char* programName)
{
    // The toolkit's file dialog would keep its state from one run to the next.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
    QCoreApplication::setApplicationName("tonfloss");
    QCoreApplication::setApplicationVersion(TONFLOSS_VERSION);
    impl_ = std::make_unique<Impl>(programName);
    QGuiApplication::setDesktopFileName("org.tonfloss.Tonfloss");
    // After the first frame, which doesn't need it: the icon has several sizes to read.
    const auto showIcon = [] {
        QIcon icon;
        for (const int pixels : {16, 32, 48, 64})
            icon.addFile(QString(":/tonfloss-%1.png").arg(pixels));
        QApplication::setWindowIcon(icon);
    };
    QMetaObject::invokeMethod(qApp, showIcon, Qt::QueuedConnection);
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
