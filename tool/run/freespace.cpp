#include "run/freespace.h"

#include <sys/statvfs.h>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"

namespace TQTool {
namespace {

constexpr double kBytesPerValue = 8.0;
constexpr double kTolerance = 2.0;  // for rows whose lengths vary
constexpr double kMegabyte = 1e6;

}  // namespace

void CheckFreeSpace(const std::string& directory, std::optional<double> rows, std::size_t columns) {
  struct statvfs status = {};
  // Where nothing is known, or told, writing will show.
  if (!rows.has_value() || statvfs(directory.c_str(), &status) != 0 || status.f_blocks == 0) return;
  const double needed = *rows * static_cast<double>(columns) * kBytesPerValue;
  const double available =
      static_cast<double>(status.f_bavail) * static_cast<double>(status.f_frsize);
  if (needed <= kTolerance * available) return;
  throw ToolError(
      kFileSystem,
      fmt::format("{}: {:.0f} MB are free, but the temporary files need about {:.0f} MB: 8 bytes "
                  "for each row and column; free space, or name another directory with --temp-dir",
                  Printable(directory), available / kMegabyte, needed / kMegabyte));
}

}  // namespace TQTool
