#pragma once

#include <cstddef>
#include <string>

#include "model/model.h"

namespace TQTool {

// What a model tells, in the words that every output for people uses.  Names from data
// come out printable.

// "3 bins", "1 bin".
std::string CountText(std::size_t count, const char* what);

// A weight, or a number of rows: whole numbers whole, others to three digits; "?" when
// it is not known.
std::string WeightText(double weight);

// "12.5%"; "?" when it is not known.
std::string ShareText(double part, double whole);

// What was binned, and by what.
std::string TitleOf(const Model& model);

// Why some rows did not count, or not for every target; "" when all did.
std::string LeftOutOf(const Model& model);

// How many rows were read, and why some did not count.
std::string RowsOf(const Model& model);

// The column, and its target where there are several.
std::string NameOf(const BinnedAttribute& attribute, const Model& model);

// What became of a column: its bins, or what went wrong and why.
std::string OutcomeOf(const BinnedAttribute& attribute, const Model& model);

// What to do about a status that is not OK.
std::string RemedyOf(const BinnedAttribute& attribute);

// What was found in a column before it was cut.
std::string FindingsOf(const BinnedAttribute& attribute);

}  // namespace TQTool
