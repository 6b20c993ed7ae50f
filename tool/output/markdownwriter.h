#pragma once

#include <string>

#include "model/model.h"

namespace TQTool {

// The result as Markdown (with tables as GitHub has them), for reports: a section with a
// table of bins per column.  Names from data cannot become markup.
std::string WriteMarkdown(const Model& model);

}  // namespace TQTool
