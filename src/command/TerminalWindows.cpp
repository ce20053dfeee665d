#include "command/Terminal.h"

#include <windows.h>

#include <io.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace command {

void SetUpTerminal()
{
    static const auto before = GetConsoleOutputCP(); // the console may outlive the program
    if (before == 0) return;
    static_cast<void>(std::atexit([] { SetConsoleOutputCP(before); }));
    SetConsoleOutputCP(CP_UTF8);
}

bool ShowsProgress()
{
    return _isatty(_fileno(stderr)) != 0;
}

bool ClosesWithProgram()
{
    std::array<DWORD, 2> programs{};
    return GetConsoleProcessList(programs.data(), static_cast<DWORD>(programs.size())) == 1;
}

} // namespace command
