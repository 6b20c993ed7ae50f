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
  const bool isJson = fKind == ProgressKind::kJson;
  const Clock::time_point now = Clock::now();
  const bool isFirstColumn = fRecords.IsDone() && fNumBinned == 0;
  if (isFirstColumn) fStart = fLast;  // nobody tells when reading ended
  fLast = now;
  const double seconds = std::chrono::duration<double>(now - fStart).count();
  if (!fRecords.IsDone()) {
    const auto rows = static_cast<std::uint64_t>(report->DiscreteMeasure("IndexVar"));
    Show(isJson ? ReadingJson(rows, seconds) : kWipe + ReadingText(rows, seconds));
    return;
  }
  const std::size_t of = fRecords.GetFedData().pairs.size();
  ++fNumBinned;
  Show(isJson ? BinningJson(fNumBinned, of, seconds)
              : kWipe + BinningText(fNumBinned, of, seconds));
}

}  // namespace TQTool
