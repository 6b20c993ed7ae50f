#include "base/terminal.h"

#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

namespace TQTool {

bool IsLiveTerminal(int file) {
  const char* const terminal = std::getenv("TERM");
  return isatty(file) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

std::size_t TerminalWidth(int file) {
  winsize size = {};
  return ioctl(file, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

bool AreColorsUnwanted() {
  const char* const wish = std::getenv("NO_COLOR");
  return wish != nullptr && *wish != '\0';
}

}  // namespace TQTool
