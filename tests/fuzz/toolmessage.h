#pragma once

#include <algorithm>
#include <string_view>

#include "base/toolerror.h"
#include "fuzz/target.h"

namespace fuzz {

// Whether a text can be shown on a terminal as it is.
inline bool IsPrintable(std::string_view text) {
  const auto isControl = [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; };
  return std::none_of(text.begin(), text.end(), isControl);
}

// What users are told about a bad input or command line: one line that cannot steer a
// terminal, and an exit code that puts the blame on what was given.
inline void RequireGoodMessage(const TQTool::ToolError& error) {
  const std::string_view message = error.what();
  Require(!message.empty() && IsPrintable(message), "an error message that is not one plain line");
  Require(error.GetExitCode() == TQTool::kUsage || error.GetExitCode() == TQTool::kInput,
          "an error that does not blame the input");
}

}  // namespace fuzz
