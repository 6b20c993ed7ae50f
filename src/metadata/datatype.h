#pragma once

#include <memory>

#include "tqbinning/binusermissing.h"

// The data types of user-missing definitions, and what follows from them.
namespace TQBinning {

constexpr int kNumericData = 0;
constexpr int kStringData = 1;

// Whether a variable or encoder for data of this type may take the definition
// over; null, which clears, always may.
inline bool Accepts(int dataType, const IBINUserMissing* userMissing) {
  return userMissing == nullptr || userMissing->GetDataType() == dataType;
}

// Makes `userMissing` the owner's definition, deleting the one before it.
inline void TakeOver(std::unique_ptr<IBINUserMissing>& owner, IBINUserMissing* userMissing) {
  if (owner.get() != userMissing) owner.reset(userMissing);
}

// The definition as one of numbers (of strings); null when there is none of that type.
inline const BINNumericUserMissing* AsNumeric(const IBINUserMissing* userMissing) {
  if (userMissing == nullptr || userMissing->GetDataType() != kNumericData) return nullptr;
  return static_cast<const BINNumericUserMissing*>(userMissing);
}
inline const BINStringUserMissing* AsString(const IBINUserMissing* userMissing) {
  if (userMissing == nullptr || userMissing->GetDataType() != kStringData) return nullptr;
  return static_cast<const BINStringUserMissing*>(userMissing);
}

}  // namespace TQBinning
