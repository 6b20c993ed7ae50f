#pragma once

#include <string>

#include "export/binlist.h"

namespace TQTool {

// Each writes the bins in one language, in the file named after it; docs/export.md tells
// what comes out.  Whatever stands in a name or a label stays a name or a label.  Throws
// ToolError (kInput) for a text with a character that the language has no way to write.
std::string WriteSql(const BinList& list);
std::string WritePython(const BinList& list);
std::string WriteC(const BinList& list);
std::string WritePmml(const BinList& list);

}  // namespace TQTool
