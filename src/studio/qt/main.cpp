#include "files/Files.h"
#include "platform/qt/Paths.h"
#include "studio/qt/Texts.h"
#include "studio/qt/Window.h"

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QSettings>
#include <QTranslator>

#include <array>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

namespace {

constexpr std::string_view kVersion = "tonfloss-studio " TONFLOSS_VERSION "\n";
constexpr std::string_view kHelp =
    "Opens a window to choose a part of a sound, hear it as the Sharp PC-1600 plays it, and save it for the machine.\n"
    "Usage: tonfloss-studio [OPTIONS] [FILE]\n"
    "\n"
    "  FILE                        A sound, or a saved sound file\n"
    "\n"
    "Options:\n"
    "  --help                      Show this and end\n"
    "  --version                   Show the version and end\n";

/// No exception gets into the toolkit: what nobody expected is told in the window.
class Program : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override
    {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::exception& failure) {
            if (window != nullptr) window->Tell(QString::fromUtf8(failure.what()));
            return true;
        }
    }

    studio::Window* window = nullptr;
};

int Run(char* programName, const char* file)
{
    // The toolkit's file dialog would keep its state from one run to the next.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, "/dev/null");
    QCoreApplication::setApplicationName("tonfloss-studio");
    QCoreApplication::setApplicationVersion(TONFLOSS_VERSION);
    int count = 1; // the toolkit would act on more, and keeps a reference
    std::array<char*, 2> arguments{programName, nullptr};
    Program program(count, arguments.data());
    QGuiApplication::setDesktopFileName("org.tonfloss.Tonfloss.Studio");
    QTranslator translator; // the toolkit's own words, and the direction of their language
    if (translator.load(QLocale::system(), "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator);
    QIcon icon;
    for (const int pixels : {16, 32, 48, 64})
        icon.addFile(QString(":/tonfloss-%1.png").arg(pixels));
    QApplication::setWindowIcon(icon);

    studio::Window window(studio::DesktopLanguage(), std::filesystem::temp_directory_path());
    program.window = &window;
    window.resize(1100, 720);
    window.show();
    if (file != nullptr) window.Open(platform::ToPath(QString::fromLocal8Bit(file)));
    const int status = QApplication::exec();
    program.window = nullptr;
    return status;
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        files::BeginWriting();
        const std::string_view first = argc > 1 ? argv[1] : "";
        if (first == "--help" || first == "--version") {
            files::WriteStandardOutput(
                [&](const files::ByteSink& sink) { sink(first == "--help" ? kHelp : kVersion); });
            return EXIT_SUCCESS;
        }
        const int status = Run(argv[0], argc > 1 ? argv[argc - 1] : nullptr);
        files::EndWriting();
        return status;
    } catch (const std::exception& failure) {
        std::cerr << "tonfloss-studio: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
