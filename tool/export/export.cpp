#include "export/export.h"

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "export/binlist.h"
#include "model/jsontext.h"

namespace TQTool {
namespace {

// Refuses what the command line gave in bytes that most of the languages cannot hold; what
// comes from a model file is UTF-8.
void CheckText(const char* option, const std::string& text) {
  if (IsUtf8(text)) return;
  throw ToolError(kUsage, fmt::format("{}: {} is not UTF-8; expected a name in that encoding",
                                      option, Quoted(text)));
}

}  // namespace

std::string ExportModel(const Model& model, const ExportOptions& options) {
  CheckText("--table", options.table);
  CheckText("--suffix", options.suffix);
  try {
    return options.format.write(ListBins(model, options));
  } catch (const ToolError& error) {  // which knows the name at fault, but not the file
    throw ToolError(error.GetExitCode(),
                    fmt::format("{}: {}", Printable(options.model), error.what()));
  }
}

}  // namespace TQTool
