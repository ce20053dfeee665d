#include "command/Messages.h"

#include "command/Names.h"
#include "files/Files.h"

#include <cstdlib>
#include <iostream>

namespace command {
namespace {

/// What the library of files can't know is added.
std::string ReasonOf(const files::IOException& failure)
{
    switch (failure.ErrorKind) {
    case files::IOException::Kind::Exists: return failure.Reason() + " --force replaces it.";
    case files::IOException::Kind::IsTheSource: return "This is a sound file that is read.";
    case files::IOException::Kind::NoOrdinaryFile: break;
    default: return failure.Reason();
    }
    std::error_code error;
    return std::filesystem::is_directory(failure.File, error) ? "This is a folder." : failure.Reason();
}

} // namespace

void Show(std::string_view text)
{
    files::WriteStandardOutput([&](const files::ByteSink& sink) { sink(text); });
}

int Show(const Ending& ending)
{
    if (ending.status == EXIT_SUCCESS)
        Show(ending.text);
    else
        std::cerr << ending.text;
    return ending.status;
}

void Complain(std::string_view program, const std::filesystem::path& what, std::string_view reason)
{
    std::cerr << program << ": ";
    if (!what.empty()) std::cerr << Shown(what) << ": ";
    std::cerr << reason << '\n';
}

void Complain(std::string_view program, const std::filesystem::path& what, const std::exception& failure)
{
    if (const auto* const ofFile = dynamic_cast<const files::IOException*>(&failure))
        Complain(program, ofFile->File, ReasonOf(*ofFile));
    else
        Complain(program, what, failure.what());
}

int Run(std::string_view program, int argc, char* argv[], const std::function<int(std::vector<std::string>)>& run)
{
    try {
        files::BeginWriting();
        return run({argv + 1, argv + argc});
    } catch (const std::exception& failure) {
        Complain(program, "", failure);
        return EXIT_FAILURE;
    }
}

} // namespace command
