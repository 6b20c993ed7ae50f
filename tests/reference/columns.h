#pragma once

#include <cstddef>
#include <vector>

#include "reference/reference.h"

// From records to sorted tuples.
namespace reference {

// The first variable with the role, -1 when there is none.
int FindRole(const std::vector<Variable>& variables, int role);

bool HasCategories(const Variable& variable);

// OK, or the factory's refusal.  A variable without a category is reported
// before one with a single category.
Status CheckVariables(const std::vector<Variable>& variables);

// One prepared column.  An unusable column gets no further value, so that its
// values may end before those of the others.
struct Column {
  std::vector<double> values;
  bool usable = true;
  int largestCode = 0;
};

// What the pass leaves behind: columns by variable.
struct Prepared {
  Status status;
  std::vector<Column> columns;
  std::size_t keptCases = 0;
};

// The pass over the records.
Prepared Prepare(const Problem& problem);

// What is known of an attribute that was read.
struct Extract {
  std::size_t valid = 0;
  unsigned nDistinct = 0;
  double validWeight = 0.0;
  double allWeight = 0.0;
  double minimum = 0.0;
  double maximum = 0.0;
};

// Reads the columns in step, puts the valid cases at the front of `tuples`
// (null: only counts them) and sorts them.  What earlier attributes left behind
// them stays.  `target` and `weight` may be null.
Extract ReadAttribute(const Column& attribute, const Column* target, const Column* weight,
                      const Problem& problem, std::vector<Tuple>* tuples);

}  // namespace reference
