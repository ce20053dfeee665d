#include "files/Files.h"
#include "platform/Application.h"
#include "window/App.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>
#include <vector>

namespace {

/// None for all that leads to the window.
const char* AnswerTo(const std::vector<std::string_view>& arguments)
{
    for (const auto& argument : arguments) {
        if (argument == "--version") return "tonfloss " TONFLOSS_VERSION "\n";
        if (argument == "--help")
            return "Opens a window that makes sound files for the Sharp PC-1600 of recordings: drop them on it.\n"
                   "Usage: tonfloss [OPTIONS]\n"
                   "\n"
                   "Options:\n"
                   "  --help                      Show this and end\n"
                   "  --version                   Show the version and end\n"
                   "\n"
                   "tonfloss-prepare makes such a recording of any sound file, tonfloss-preview plays a sound file.\n";
    }
    return nullptr;
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        files::BeginWriting();
        if (const auto* const answer = AnswerTo({argv + 1, argv + argc})) {
            files::WriteStandardOutput([&](const files::ByteSink& sink) { sink(answer); });
            return EXIT_SUCCESS;
        }
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
