#pragma once

#include <cmath>
#include <cstddef>
#include <optional>

#include "reference/reference.h"

// What the parts of the plain implementation have in common.
namespace reference {

inline constexpr long kBadTable = 120002;
inline constexpr long kBadVariableList = 120003;
inline constexpr long kNoCase = 120004;
inline constexpr long kIndexHasOtherUse = 120005;
inline constexpr long kTargetNotCategorical = 120006;
inline constexpr long kNoValidPair = 120008;
inline constexpr long kBadNumberOfBins = 120009;
inline constexpr long kBadTarget = 120010;
inline constexpr long kBadAttribute = 120011;
inline constexpr long kBadCode = 120012;
inline constexpr long kBadIndex = 120013;
inline constexpr long kOneDistinctValue = 120014;
inline constexpr long kNoValidCase = 120015;
inline constexpr long kOneTargetClass = 120016;
inline constexpr long kNoCutAccepted = 120017;
inline constexpr long kSomeNotOk = 120018;
inline constexpr long kNoPercentile = 120019;

inline constexpr double kLn2 = 0.6931471805599453;
inline constexpr int kLargestCode = 255;

inline Status Warning(long code) {
  Status status;
  status.code = code;
  status.severity = 1;
  return status;
}

inline Status Error(long code) {
  Status status = Warning(code);
  status.severity = -1;
  return status;
}

inline Status WithDatum(Status status, std::size_t slot, long datum) {
  status.discrete[slot] = datum;
  return status;
}

inline std::size_t Position(int index) { return static_cast<std::size_t>(index); }

inline double Log2(double x) { return std::log(x) / kLn2; }

// The value without its fraction, or nothing when that does not fit an int.
inline std::optional<int> Truncate(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return std::nullopt;
  return static_cast<int>(value);
}

inline bool IsCode(const std::optional<int>& code) {
  return code && *code >= 0 && *code <= kLargestCode;
}

}  // namespace reference
