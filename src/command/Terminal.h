// Terminal.h: what the program has to know of the terminal that it runs in.
#pragma once

namespace command {

/// Lets the terminal show UTF-8 until the program ends.
void SetUpTerminal();

/// True where standard error is shown to somebody who waits.
[[nodiscard]] bool ShowsProgress();

/// True where the terminal was opened for this program alone and closes with it.
[[nodiscard]] bool ClosesWithProgram();

} // namespace command
