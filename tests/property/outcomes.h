#pragma once

#include <cmath>
#include <string>

#include "reference/reference.h"

namespace property {

// Bit for bit, except that both zeros are one number and so are all NaNs.
inline bool SameNumber(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// Where two outcomes part, in words; empty when they agree in every field.
std::string Difference(const reference::Outcome& expected, const reference::Outcome& actual);

// The same for one result.
std::string Difference(const reference::PairResult& expected, const reference::PairResult& actual);

}  // namespace property
