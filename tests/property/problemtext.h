#pragma once

#include <string>
#include <vector>

#include "reference/reference.h"

namespace property {

// Numbers as C++ writes them, exactly: the shortest text that reads back as the same
// double, or kNaN, kInfinity, kMissing.
std::string TextOf(double value);
std::string TextOf(const std::vector<double>& values);

// For people: "warning 120014 {3, 0, 0}".
std::string TextOf(const reference::Status& status);

// A problem as C++ initialiser text in the words of problemwords.h, fit to be pasted
// into a test.
std::string TextOf(const reference::Problem& problem);

}  // namespace property
