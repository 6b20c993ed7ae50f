#pragma once

#include <string>

namespace TQTool {

// The end of a private directory's path: what mkdtemp makes a name of.
inline constexpr char kPrivateName[] = "tqbin-XXXXXX";

// Removes what runs that were killed left below `base`: directories named and
// protected as private ones are, of the same user, which nobody locks.  Follows no
// symbolic links.  What cannot be removed stays: it is no run's business.
void RemoveStaleDirectories(const std::string& base);

// Removes the files in a directory, which is open, and the directories there with theirs; false
// when it removed none.  Safe in a signal handler.
bool RemoveFilesIn(int directory);

}  // namespace TQTool
