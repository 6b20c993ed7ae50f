#pragma once

#include <string>

#include "cli/commandtable.h"

namespace TQTool {

// The manual page tqbin(1), in troff.
std::string ManualPage(const CommandTable& table);

}  // namespace TQTool
