#pragma once

#include <string>

#include "export/exportoptions.h"
#include "model/model.h"

namespace TQTool {

// The bins of a model in another language.  Throws ToolError (kInput) for names that go
// neither together nor into that language.
std::string ExportModel(const Model& model, const ExportOptions& options);

}  // namespace TQTool
