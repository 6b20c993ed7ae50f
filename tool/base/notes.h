#pragma once

#include <string>

namespace TQTool {

// Tells the user on standard error what is worth knowing but no error.
void PrintNote(const std::string& note);

}  // namespace TQTool
