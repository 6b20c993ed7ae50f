// Model files: whatever can be read writes a file that reads back as the same model, and
// can be shown; all else is refused with a message.

#include <string>

#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "fuzz/toolmessage.h"
#include "model/modelcheck.h"
#include "model/modelreader.h"
#include "model/modelwriter.h"
#include "output/modelprinter.h"
#include "report/report.h"

namespace {

using fuzz::Require;
using TQTool::Model;
using TQTool::OutputFormat;

// Nothing in the model can steer a terminal, or put a line between others.
void RequirePlainLines(const std::string& text) {
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find('\n', begin);
    Require(end != std::string::npos, "a last line without an end");
    Require(fuzz::IsPrintable(text.substr(begin, end - begin)), "a control character shown");
    begin = end + 1;
  }
}

void Show(const Model& model) {
  for (const std::string& doubt : TQTool::FindDoubts(model)) {
    Require(fuzz::IsPrintable(doubt), "a remark that is not one plain line");
  }
  TQTool::OutputOptions options;
  for (const OutputFormat format : {OutputFormat::kCsv, OutputFormat::kNdjson}) {
    options.format = format;
    Require(TQTool::PrintModel(model, options).ends_with('\n') || model.attributes.empty(),
            "a last line without an end");
  }
  options.color = TQTool::ColorUse::kNever;
  for (const OutputFormat format : {OutputFormat::kTable, OutputFormat::kMarkdown}) {
    options.format = format;
    RequirePlainLines(TQTool::PrintModel(model, options));
  }
  const std::string page = TQTool::WriteReport(model);
  Require(page.find("<script") == std::string::npos, "a script in the report");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::Bytes(data, size).Rest();
  Model model;
  try {
    model = TQTool::ReadModel(text, "m.json");
  } catch (const TQTool::ToolError& error) {
    fuzz::RequireGoodMessage(error);
    return 0;
  }
  const std::string written = TQTool::WriteModel(model);
  const Model again = TQTool::ReadModel(written, "written.json");
  Require(again == model, "a model that reads back as another");
  Require(TQTool::WriteModel(again) == written, "a model that is written otherwise again");
  Show(model);
  return 0;
}
