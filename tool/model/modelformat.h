#pragma once

namespace TQTool {

// How a model file says what it is.  The version counts up whenever a reader of the
// earlier one would misunderstand the file.
inline constexpr const char* kModelFormat = "tqbin-model";
inline constexpr unsigned kModelVersion = 1;

}  // namespace TQTool
