#pragma once

#include <cstddef>
#include <string>

#include "model/model.h"

namespace TQTool {

struct TableStyle {
  std::size_t width = 0;  // of a line, in characters; 0 for as long as it takes
  bool isColored = false;
};

// The result as text for people: one table of bins per column.
std::string WriteTable(const Model& model, const TableStyle& style = {});

}  // namespace TQTool
