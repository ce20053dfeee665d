// Messages.h: how a command answers, and how it tells what is wrong: "PROGRAM: WHAT: REASON", on standard error.
#pragma once

#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace command {

inline constexpr int kWrongUsage = 2; // the exit status

/// What is shown in place of any work.
struct Ending {
    std::string text;
    int status; // 0: it was asked for
};

/// On the standard output.
void Show(std::string_view text);
/// Where it belongs; gives its status back.
int Show(const Ending& ending);

/// `what` is a file, or empty.
void Complain(std::string_view program, const std::filesystem::path& what, std::string_view reason);
/// About `failure`, which `what` had, unless `failure` names a file itself.
void Complain(std::string_view program, const std::filesystem::path& what, const std::exception& failure);

/// What `main` is to do: gives `run` the arguments, without the program's name, and tells what it throws. The status.
int Run(std::string_view program, int argc, char* argv[], const std::function<int(std::vector<std::string>)>& run);

} // namespace command
