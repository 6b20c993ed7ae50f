#pragma once

#include <memory>

namespace TQBinning {

// A deep copy of an object that may be absent.
template <typename T>
std::unique_ptr<T> CloneOf(const std::unique_ptr<T>& original) {
  return std::unique_ptr<T>(original ? original->Clone() : nullptr);
}

}  // namespace TQBinning
