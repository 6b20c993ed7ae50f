#pragma once

#include <string>

#include "model/model.h"

namespace TQTool {

// The text of a model file: JSON as docs/model.schema.json describes it, the same to
// the byte for the same model.
std::string WriteModel(const Model& model);

// The attributes as the model file describes them, each in one line of JSON.
std::string WriteAttributes(const Model& model);

}  // namespace TQTool
