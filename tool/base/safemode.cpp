#include "base/safemode.h"

namespace TQTool {
namespace {

bool gIsSafeMode = false;  // set while the command line is read, before any thread

}  // namespace

void EnterSafeMode() { gIsSafeMode = true; }

bool IsSafeMode() { return gIsSafeMode; }

}  // namespace TQTool
