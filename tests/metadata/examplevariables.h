#pragma once

#include <type_traits>

#include <gtest/gtest.h>

#include "metadata/vocabulary.h"
#include "tqbinning/binencoder.h"
#include "tqbinning/binusermissing.h"
#include "tqbinning/binvariable.h"
#include "tqcommon/missingvalue.h"

// What the tests of variables share.
namespace metadata {

inline const double kMissing = TQMV::gMissingValue;

static_assert(std::is_abstract_v<IBINVariable>);
static_assert(std::has_virtual_destructor_v<IBINVariable>);

inline BINContVar Income() { return BINContVar("income", "Yearly income", kAttribute); }
inline BINCatVar Grade(int categories) {
  return BINCatVar("grade", "Grade", categories, kNumeric, kTarget);
}
inline BINCatVar Town(int categories) {
  return BINCatVar("town", "Town", categories, kString, kTarget);
}
inline BINWeightVar Weight() { return BINWeightVar("w", "Weight", IBINVariable::kTruncate); }

inline BINCatNumEncoder& NumericEncoder(BINCatVar& variable) {
  return dynamic_cast<BINCatNumEncoder&>(*variable.GetEncoder());
}
inline BINStringEncoder& StringEncoder(BINCatVar& variable) {
  return dynamic_cast<BINStringEncoder&>(*variable.GetEncoder());
}
inline BINRoundEncoder& RoundEncoder(BINWeightVar& variable) {
  return dynamic_cast<BINRoundEncoder&>(*variable.GetEncoder());
}

// Lets the variable's encoder see this many different values.
inline void See(BINCatVar& variable, int values) {
  for (int i = 0; i < values; ++i) NumericEncoder(variable).Encode(100.0 + i);
}

// The encoder of a weight variable must point at the variable's own definition.
inline void ExpectSharedDefinition(const BINWeightVar& weight) {
  ASSERT_NE(nullptr, weight.GetEncoder());
  EXPECT_EQ(weight.GetUserMissingInfo(), weight.GetEncoder()->GetUserMissingInfo());
}

}  // namespace metadata
