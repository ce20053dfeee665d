#include "command/Terminal.h"

#include <unistd.h>

namespace command {

void SetUpTerminal()
{} // it shows UTF-8 as it is

bool ShowsProgress()
{
    return isatty(STDERR_FILENO) == 1;
}

bool ClosesWithProgram()
{
    return false; // it can't be known here: the desktop entry says so by an option
}

} // namespace command
