#include "files/Files.h"
#include "platform/Application.h"
#include "window/App.h"

#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char* argv[])
{
    try {
        files::BeginWriting();
        platform::Application application(argc, argv);
        const auto dialogs = platform::MakeDialogs();
        App app(*dialogs);
        app.Window.Show();
        return application.Run();
    } catch (const std::exception& failure) {
        std::cerr << "tonfloss: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
