#pragma once

#include <string>

#include "run/runresult.h"

namespace TQTool {

// The result as a JSON document for programs.  Numbers are written so that they
// read back as the very same doubles; unknown and infinite ones are null.  Text
// that is no UTF-8 gets replacement characters.  "format" and "version" tell
// readers what to expect: the version changes when a field changes its meaning.
std::string WriteJson(const RunResult& result);

}  // namespace TQTool
