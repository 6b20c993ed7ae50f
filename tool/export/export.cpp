#include "export/export.h"

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "export/binlist.h"
#include "export/formats.h"

namespace TQTool {
namespace {

std::string Write(const BinList& list, ExportFormat format) {
  switch (format) {
    case ExportFormat::kSql: return WriteSql(list);
    case ExportFormat::kPython: return WritePython(list);
    case ExportFormat::kC: return WriteC(list);
    case ExportFormat::kPmml: break;
  }
  return WritePmml(list);
}

}  // namespace

std::string ExportModel(const Model& model, const ExportOptions& options) {
  try {
    return Write(ListBins(model, options), options.format);
  } catch (const ToolError& error) {  // which knows the name at fault, but not the file
    throw ToolError(error.GetExitCode(),
                    fmt::format("{}: {}", Printable(options.model), error.what()));
  }
}

}  // namespace TQTool
