#pragma once

namespace TQTool {

inline constexpr const char* kVersion = TQBIN_VERSION;  // from the build

}  // namespace TQTool
