#pragma once

#include "base/descriptor.h"

namespace TQTool {

// The file in a private directory by whose lock its run shows that it lives.  The
// kernel releases the lock however the process ends.
inline constexpr char kOwnerFile[] = "owner";

// Takes the lock, making the file if need be.  Whoever holds the result owns the
// directory.  Nothing open, and errno EWOULDBLOCK, when somebody else owns it or has
// just removed the file; another errno when locking is not possible.
Descriptor LockOwnerFile(int directory);

}  // namespace TQTool
