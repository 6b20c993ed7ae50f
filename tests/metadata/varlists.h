#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "metadata/vocabulary.h"
#include "tqbinning/binencoder.h"
#include "tqbinning/binvarlist.h"

// The words that the tests of variable lists share.
namespace metadata {

inline constexpr auto kUnknown = IBINVariable::kUnknownLevel;
inline constexpr auto kTruncate = IBINVariable::kTruncate;
inline constexpr auto kRound = IBINVariable::kRoundToClosest;

using Doubles = std::vector<double>;
using Names = std::vector<std::string>;

inline int AddCont(BINVarList& list, const std::string& name,
                   IBINVariable::VariableRole role = kAttribute) {
  return list.AddContVar(name, "label of " + name, role);
}
inline int AddNumeric(BINVarList& list, const std::string& name,
                      IBINVariable::VariableRole role = kTarget,
                      const Doubles& values = {0.0, 1.0}) {
  return list.AddCatVar(name, "label of " + name, values, role);
}
inline int AddString(BINVarList& list, const std::string& name,
                     IBINVariable::VariableRole role = kTarget,
                     const Names& values = {"no", "yes"}) {
  return list.AddCatVar(name, "label of " + name, values, role);
}
inline int AddWeight(BINVarList& list, const std::string& name) {
  return list.AddWeightVar(name, "label of " + name, kRound);
}

enum Index { kAge = 0, kGrade = 1, kTown = 2, kWeight = 3 };

// One variable of each kind; the target is in the middle.
inline BINVarList FourVariables() {
  BINVarList list;
  EXPECT_EQ(kAge, AddCont(list, "age"));
  EXPECT_EQ(kGrade, AddNumeric(list, "grade"));
  EXPECT_EQ(kTown, AddString(list, "town", kAttribute));
  EXPECT_EQ(kWeight, AddWeight(list, "w"));
  return list;
}

// Continuous attributes of these names.
inline BINVarList Attributes(const Names& names) {
  BINVarList list;
  for (const std::string& name : names) AddCont(list, name);
  return list;
}

inline Names NamesOf(const BINVarList& list) {
  Names names;
  for (int i = 0; i < list.Size(); ++i) names.push_back(list.GetVarAt(i)->GetVariableName());
  return names;
}

inline BINCatNumEncoder& NumericEncoderAt(BINVarList& list, int index) {
  return dynamic_cast<BINCatNumEncoder&>(*list.GetEncoderAt(index));
}
inline BINStringEncoder& StringEncoderAt(BINVarList& list, int index) {
  return dynamic_cast<BINStringEncoder&>(*list.GetEncoderAt(index));
}
inline BINRoundEncoder& RoundEncoderAt(BINVarList& list, int index) {
  return dynamic_cast<BINRoundEncoder&>(*list.GetEncoderAt(index));
}

// The counters, to see that a refusal or a removal left the right ones.
struct Counters {
  int size, continuous, categorical, target, weight;
  bool operator==(const Counters&) const = default;
};
inline Counters CountersOf(const BINVarList& list) {
  return {list.Size(), list.GetNumContVar(), list.GetNumCatVar(), list.GetTargetIndex(),
          list.GetWeightIndex()};
}
inline void PrintTo(const Counters& c, std::ostream* os) {
  *os << c.size << " variables, " << c.continuous << " continuous, " << c.categorical
      << " categorical, target " << c.target << ", weight " << c.weight;
}

// Copied by construction, and assigned over a list that held something else.
inline std::vector<BINVarList> CopiesOfList(const BINVarList& list) {
  std::vector<BINVarList> copies;
  copies.reserve(2);
  copies.push_back(list);
  copies.push_back(Attributes({"x", "y", "z", "u", "v"}));
  AddWeight(copies.back(), "w");
  copies.back() = list;
  return copies;
}

}  // namespace metadata
