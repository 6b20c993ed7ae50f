#include "output/progresstext.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

namespace TQTool {
namespace {

std::string DurationText(double seconds) {
  const long whole = std::lround(seconds);
  if (whole < 60) return fmt::format("{} s", whole);
  return fmt::format("{}:{:02} min", whole / 60, whole % 60);
}

}  // namespace

std::string ReadingText(std::uint64_t rows, double seconds) {
  std::string text = fmt::format("{} rows read", rows);
  if (seconds > 0.0) {
    text += fmt::format(", {:.0f} rows per second", static_cast<double>(rows) / seconds);
  }
  return text;
}

std::string BinningText(std::size_t columns, std::size_t of, double seconds) {
  constexpr std::size_t kBarWidth = 20;
  const std::size_t done = std::min(columns, of);
  const std::size_t filled = of == 0 ? kBarWidth : kBarWidth * done / of;
  std::string text = fmt::format("[{}{}] {} of {} columns binned", std::string(filled, '#'),
                                 std::string(kBarWidth - filled, '.'), done, of);
  if (seconds > 0.0 && done > 0) {
    const double perColumn = seconds / static_cast<double>(done);
    text += fmt::format(", {:.1f} per second, {} left", 1.0 / perColumn,
                        DurationText(perColumn * static_cast<double>(of - done)));
  }
  return text;
}

std::string ReadingJson(std::uint64_t rows, double seconds) {
  return fmt::format("{{\"stage\":\"reading\",\"rows\":{},\"seconds\":{:.3f}}}\n", rows, seconds);
}

std::string BinningJson(std::size_t columns, std::size_t of, double seconds) {
  return fmt::format("{{\"stage\":\"binning\",\"columns\":{},\"of\":{},\"seconds\":{:.3f}}}\n",
                     columns, of, seconds);
}

}  // namespace TQTool
