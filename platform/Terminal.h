// The terminal that the program was started in, when there is one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace varnel {

/// Standard output is a terminal that understands cursor movements.
bool OutputIsTerminal();
/// The same for standard error.
bool ErrorsGoToTerminal();
/// Somebody at a terminal can be asked: standard input and output are one, and the process is in its foreground.
bool CanAskAtTerminal();
/// Columns of the terminal at standard output; 80 when it does not say.
int TerminalColumns();
/// Writes to standard output. What cannot be written is dropped.
void WriteToOutput(std::string_view text);
/// Waits for one line of standard input, or until wakeUp (a descriptor, or -1) can be read. Returns the line without
/// its end; nothing at the end of the input or after a wake-up.
std::optional<std::string> ReadTerminalLine(int wakeUp);

}  // namespace varnel
