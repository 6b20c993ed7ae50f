#pragma once

namespace TQTool {

// In safe mode the run opens no file but those that the command line names, and those
// only if they are what they look like.  It holds for the whole process, so that no
// place that opens a file can forget to be told.
void EnterSafeMode();
bool IsSafeMode();

}  // namespace TQTool
