#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tqcommon/tqcommon.h>

namespace TQTool {

// The cases of a run in a temporary file, so that they can be looked at once more when
// their bins are known, whatever their number.  The file has no name and goes with the
// spool.  Every operation throws ToolError (kFileSystem) when it fails.
class CaseSpool {
 public:
  // Keeps records of `recordSize` numbers in a file of this directory.
  CaseSpool(const std::string& directory, int recordSize);

  void Add(const TQCommon::Record& record);

  // Hands out the numbers of all cases, in the order in which they were added.
  void ForEach(const std::function<void(const double* record)>& take);

 private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::unique_ptr<std::FILE, Closer> fFile;
  std::vector<double> fRecord;
  std::uint64_t fCount = 0;
};

}  // namespace TQTool
