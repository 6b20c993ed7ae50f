#pragma once

#include <string>

namespace TQTool {

struct BinList;

// Each writes the bins in one language, in the file named after it; docs/export.md tells
// what comes out.  Whatever stands in a name or a label stays a name or a label.  Throws
// ToolError (kInput) for a text with a character that the language has no way to write.
std::string WriteSql(const BinList& list);
std::string WritePython(const BinList& list);
std::string WriteC(const BinList& list);
std::string WritePmml(const BinList& list);

// A language that bins are exported to.
struct ExportFormat {
  const char* name;         // what --format takes
  const char* language;     // what people call it
  const char* description;  // what comes out
  bool readsTable;          // whether --table means something to it
  std::string (*write)(const BinList& list);
};

// All of them, in the order in which help tells them.
inline constexpr ExportFormat kExportFormats[] = {
    {"sql", "SQL", "a query with a CASE expression per column", true, WriteSql},
    {"python", "Python", "a module", false, WritePython},
    {"c", "C", "a C99 source file", false, WriteC},
    {"pmml", "PMML", "a PMML 4.4 document", false, WritePmml}};

}  // namespace TQTool
