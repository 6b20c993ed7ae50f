#include "output/modelprinter.h"

#include <unistd.h>

#include "base/terminal.h"
#include "model/modelwriter.h"
#include "output/bincsv.h"
#include "output/markdownwriter.h"
#include "output/tablewriter.h"

namespace TQTool {
namespace {

TableStyle StyleFor(const OutputOptions& options) {
  const bool isStandardOutput = options.path.empty() || options.path == "-";
  TableStyle style;
  if (isStandardOutput && isatty(STDOUT_FILENO) != 0) style.width = TerminalWidth(STDOUT_FILENO);
  style.isColored =
      options.color == ColorUse::kAlways || (options.color == ColorUse::kAuto && isStandardOutput &&
                                             IsLiveTerminal(STDOUT_FILENO) && !AreColorsUnwanted());
  return style;
}

}  // namespace

std::string PrintModel(const Model& model, const OutputOptions& options) {
  switch (options.format) {
    case OutputFormat::kJson: return WriteModel(model);
    case OutputFormat::kNdjson: return WriteAttributes(model);
    case OutputFormat::kCsv: return WriteBinCsv(model, options.isSpreadsheetSafe);
    case OutputFormat::kMarkdown: return WriteMarkdown(model);
    case OutputFormat::kTable: break;
  }
  return WriteTable(model, StyleFor(options));
}

}  // namespace TQTool
