#include "run/casespool.h"

#include <cerrno>
#include <cstddef>
#include <cstring>

#include <unistd.h>

#include <fmt/format.h>

#include "base/toolerror.h"

namespace TQTool {
namespace {

[[noreturn]] void Fail(const char* what, int error) {
  throw ToolError(kFileSystem, fmt::format("a temporary file cannot be {}: {}; free space, or name "
                                           "another directory with --temp-dir",
                                           what, std::strerror(error)));
}

}  // namespace

CaseSpool::CaseSpool(const std::string& directory, int recordSize)
    : fRecord(static_cast<std::size_t>(recordSize)) {
  const std::string path = directory + "/cases";
  fFile.reset(std::fopen(path.c_str(), "wb+ex"));
  if (fFile == nullptr || unlink(path.c_str()) != 0) Fail("made", errno);
}

void CaseSpool::Add(const TQCommon::Record& record) {
  for (std::size_t i = 0; i < fRecord.size(); ++i) fRecord[i] = record[static_cast<int>(i)];
  if (std::fwrite(fRecord.data(), sizeof(double), fRecord.size(), fFile.get()) != fRecord.size()) {
    Fail("written", errno);
  }
  ++fCount;
}

void CaseSpool::ForEach(const std::function<void(const double* record)>& take) {
  if (std::fflush(fFile.get()) != 0) Fail("written", errno);
  std::rewind(fFile.get());
  for (std::uint64_t i = 0; i < fCount; ++i) {
    if (std::fread(fRecord.data(), sizeof(double), fRecord.size(), fFile.get()) != fRecord.size()) {
      Fail("read", errno);
    }
    take(fRecord.data());
  }
}

}  // namespace TQTool
