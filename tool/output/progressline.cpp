#include "output/progressline.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

#include <fmt/format.h>

namespace TQTool {
namespace {

constexpr const char* kWipe = "\r\x1b[K";  // back to the line's start, clear the rest

bool IsLiveTerminal() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDERR_FILENO) != 0 && terminal != nullptr && std::string("dumb") != terminal;
}

void Show(const std::string& line) { std::fputs(line.c_str(), stderr); }

}  // namespace

ProgressLine::ProgressLine(const RecordFeed& records)
    : fRecords(records), fIsTerminal(IsLiveTerminal()), fNumBinned(0) {}

ProgressLine::~ProgressLine() {
  if (fIsTerminal) Show(kWipe);
}

void ProgressLine::Report(ProgressReport* report) {
  if (!fIsTerminal) return;
  if (!fRecords.IsDone()) {
    Show(fmt::format("{}{} rows read", kWipe, report->DiscreteMeasure("IndexVar")));
  } else {
    Show(fmt::format("{}{} of {} columns binned", kWipe, ++fNumBinned,
                     fRecords.GetFedData().pairs.size()));
  }
}

}  // namespace TQTool
