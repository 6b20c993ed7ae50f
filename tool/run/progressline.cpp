#include "run/progressline.h"

#include <cstdio>
#include <string>

#include <unistd.h>

#include "base/notes.h"
#include "base/terminal.h"
#include "output/progresstext.h"

namespace TQTool {
namespace {

constexpr const char* kWipe = "\r\x1b[K";  // back to the line's start, clear the rest

void Show(const std::string& line) { std::fputs(line.c_str(), stderr); }

ProgressKind ActualKind(ProgressKind kind) {
  if (AreNotesSilent()) return ProgressKind::kNone;
  if (kind != ProgressKind::kAuto) return kind;
  return IsLiveTerminal(STDERR_FILENO) ? ProgressKind::kBar : ProgressKind::kNone;
}

}  // namespace

ProgressLine::ProgressLine(const RecordFeed& records, ProgressKind kind)
    : fRecords(records), fKind(ActualKind(kind)) {}

ProgressLine::~ProgressLine() {
  if (fKind == ProgressKind::kBar) Show(kWipe);
}

void ProgressLine::Report(ProgressReport* report) {
  if (fKind == ProgressKind::kNone) return;
  if (fRecords.IsDone()) {
    ShowBinned();
  } else {
    ShowRows(static_cast<std::uint64_t>(report->DiscreteMeasure("IndexVar")));
  }
}

void ProgressLine::ShowRows(std::uint64_t rows) {
  if (fKind == ProgressKind::kNone || rows <= fNumRead) return;
  fNumRead = rows;
  fLast = Clock::now();
  const double seconds = std::chrono::duration<double>(fLast - fStart).count();
  Show(fKind == ProgressKind::kJson ? ReadingJson(rows, seconds)
                                    : kWipe + ReadingText(rows, seconds));
}

void ProgressLine::ShowBinned() {
  const std::lock_guard lock(fMutex);
  if (fNumBinned == 0) fStart = fLast;  // nobody tells when reading ended
  const double seconds = std::chrono::duration<double>(Clock::now() - fStart).count();
  const std::size_t of = fRecords.GetFedData().pairs.size();
  ++fNumBinned;
  Show(fKind == ProgressKind::kJson ? BinningJson(fNumBinned, of, seconds)
                                    : kWipe + BinningText(fNumBinned, of, seconds));
}

}  // namespace TQTool
