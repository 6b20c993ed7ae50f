#pragma once

#include <cstddef>
#include <string>

#include "model/model.h"

namespace TQTool {

// What names a bin.
enum class BinText { kLabel, kInterval, kIndex };

// The bin's label, its interval, or its index (from 0).
std::string BinTextOf(const BinnedAttribute& attribute, std::size_t bin, BinText kind);

// How the column of an attribute's bins is called: "age_bin", or "age_by_income_bin" where
// the model bins the column against more than one target.
std::string BinColumnName(const Model& model, const BinnedAttribute& attribute,
                          const std::string& suffix);

}  // namespace TQTool
