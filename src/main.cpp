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
        platform::Application application(argv[0]);
        const auto dialogs = platform::MakeDialogs();
        App app(*dialogs);
        if (argc > 1) app.RefuseArguments();
        app.Window.Show();
        const int status = application.Run();
        files::EndWriting();
        return status;
    } catch (const std::exception& failure) {
        std::cerr << "tonfloss: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
}
