#pragma once

namespace TQTool {

// How a run tells on standard error how far it is: with a bar, in lines of JSON for
// hosting programs, or not at all; kAuto is the bar where that is a terminal.
enum class ProgressKind { kAuto, kBar, kJson, kNone };

}  // namespace TQTool
