#include "prepare/Terminal.h"

#include <unistd.h>

namespace prepare {

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

} // namespace prepare
