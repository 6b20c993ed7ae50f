#include "output/progressline.h"

#include <cstdio>
#include <string>

#include <unistd.h>

#include <fmt/format.h>

#include "base/notes.h"
#include "base/terminal.h"

namespace TQTool {
namespace {

constexpr const char* kWipe = "\r\x1b[K";  // back to the line's start, clear the rest

void Show(const std::string& line) { std::fputs(line.c_str(), stderr); }

}  // namespace

ProgressLine::ProgressLine(const RecordFeed& records)
    : fRecords(records),
      fIsTerminal(IsLiveTerminal(STDERR_FILENO) && !AreNotesSilent()),
      fNumBinned(0) {}

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
