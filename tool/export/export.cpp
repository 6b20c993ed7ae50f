#include "export/export.h"

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "export/binlist.h"

namespace TQTool {

std::string ExportModel(const Model& model, const ExportOptions& options) {
  // What comes from a model file is UTF-8, and most of the languages hold nothing else.
  RequireUtf8("--table", options.table);
  RequireUtf8("--suffix", options.suffix);
  try {
    return options.format.write(ListBins(model, options));
  } catch (const ToolError& error) {  // which knows the name at fault, but not the file
    throw ToolError(error.GetExitCode(),
                    fmt::format("{}: {}", Printable(options.model), error.what()));
  }
}

}  // namespace TQTool
