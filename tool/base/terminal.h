#pragma once

#include <cstddef>

namespace TQTool {

// Whether a file descriptor leads to a terminal that understands escape sequences.
bool IsLiveTerminal(int file);

// How many characters fit a line of the terminal behind a file descriptor; 0 when that is
// none, or does not tell.
std::size_t TerminalWidth(int file);

// Whether the user wants no colours: NO_COLOR is set and not empty.
bool AreColorsUnwanted();

}  // namespace TQTool
