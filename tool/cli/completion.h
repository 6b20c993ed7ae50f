#pragma once

#include <string>

#include "cli/commandtable.h"

namespace TQTool {

// Scripts that teach a shell to complete the commands, options, listed values and file
// names of tqbin.
std::string BashCompletion(const CommandTable& table);
std::string ZshCompletion(const CommandTable& table);
std::string FishCompletion(const CommandTable& table);

}  // namespace TQTool
