#pragma once

#include <tqcommon/tqcommon.h>

namespace TQTool {

// From now on SIGINT, SIGTERM and SIGHUP ask the run to end in good order; one
// that is ignored (nohup) stays ignored.  A second signal removes the private
// directory and ends the process at once.  Also keeps a closed pipe and a file
// size limit from ending the process: the failing write is reported instead.
void InstallSignalHandlers();

// The first signal caught, or 0.
int CaughtSignal();

// Throws the ToolError of a cancelled run when a signal was caught.
void ThrowIfCancelled();

// Waits until `file` can be read without blocking; throws like ThrowIfCancelled
// as soon as a signal arrives, and when waits are to end.
void WaitForInput(int file);

// The same until it can be written.
void WaitForOutput(int file);

// With true, ends every wait for input, of whatever thread, and lets none begin;
// with false, allows them again.
void EndWaits(bool isToEnd);
bool AreWaitsToEnd();

// Hands a caught signal on to the library.
class SignalQuery : public TQQueryCancel {
 public:
  bool IsCancelled() override { return CaughtSignal() != 0; }
};

}  // namespace TQTool
