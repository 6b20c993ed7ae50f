#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/descriptor.h"

namespace TQTool {

// A directory of this run alone, for the library's temporary files: made with
// mode 0700 and a name that nobody can foresee, locked while the run lives, removed
// with all that it holds by the destructor.  At most one exists at a time.
class PrivateDirectory {
 public:
  // Makes it below `base`, where it first removes those of runs that were killed.  Throws ToolError
  // (kFileSystem) when that fails.
  explicit PrivateDirectory(const std::string& base);
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;
  ~PrivateDirectory();

  const std::string& GetPath() const { return fPath; }  // absolute

  // Makes a directory in it, for files of their own, and returns its path.  Throws ToolError
  // (kFileSystem) when that fails.
  std::string MakeSubdirectory(const std::string& name) const;

  // The base to take by default: TMPDIR, or /tmp.
  static std::string DefaultBase();

  // Removes the directory that exists, if any.  Safe in a signal handler.
  static void RemoveFromSignalHandler();

 private:
  bool Make(const std::string& pattern);

  std::string fPath;
  Descriptor fDirectory;  // open, so that clearing up never lacks a file descriptor
  Descriptor fOwner;      // holds the lock
};

// The sizes in bytes of the library's files in a private directory or one that was made in it,
// in no order.
std::vector<std::uintmax_t> FileSizesIn(const std::string& directory);

}  // namespace TQTool
