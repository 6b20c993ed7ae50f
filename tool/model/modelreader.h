#pragma once

#include <string>

#include "model/model.h"

namespace TQTool {

// Reads the text of a model file; `name` is how messages call it.  Throws ToolError
// (kInput), naming the place, for what is no JSON, no model, a model of another version
// or a model that contradicts itself.
//
// Cut points and closed sides may have been edited after the bins were counted: then
// the attribute's bins are those between the cut points as they are now, counts are kept
// where the ends of a bin are ends that were counted, and isEdited is set.
Model ReadModel(const std::string& text, const std::string& name);

// The same from a file, "-" for standard input.
Model LoadModel(const std::string& path);

}  // namespace TQTool
