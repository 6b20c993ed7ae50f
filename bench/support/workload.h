#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bench/support/columns.h"

// Data sets to measure with, made from a seed.  Every column has a stream of random
// numbers of its own, so that a column does not depend on which others there are, and
// a standard workload of fewer rows is the beginning of one of more.
namespace bench {

// How an attribute's values come about.  The first four are distinct values, the
// others are full of ties; "mixed" ones know the target, by a mixture of normal
// distributions whose weights differ from class to class.
enum class Source {
  kMixed,
  kUniform,
  kNormal,
  kExponential,
  kMixedInteger,     // 0 .. 99
  kUniformInteger,   // 0 .. 99
  kMixedHundredths,  // two decimals
  kNormalHundredths,
  kMixedOrZero,  // about two thirds zeros, else log-normal
  kMixedHundredthsOrZero,
  kNormalOrZero
};

struct Workload {
  std::string name;
  std::size_t rows;
  int classes;
  bool isWeighted;  // whole weights 1 .. 5
  std::vector<Source> attributes;
};

// W1: 1,000,000 x 10 of distinct values, 2 classes.  W2: the same, 5 classes.  W3:
// 1,000,000 x 10 with heavy ties, 2 classes, weights.  W4: 5,000,000 x 2, 2 classes.
const std::vector<Workload>& StandardWorkloads();

Columns MakeColumns(const Workload& workload);

// Orders of values that algorithms like or dislike.
enum class Shape { kShuffled, kPresorted, kReversed, kOrganPipe, kAllEqual, kSawtooth, kDistinct };

struct ShapedWorkload {
  Shape shape = Shape::kShuffled;
  std::size_t rows = 0;
  int attributes = 1;
  int classes = 2;
  int distinct = 0;  // of Shape::kDistinct: how many values
  bool isWeighted = false;
  std::size_t block = 0;  // above 0: the class changes after so many rows, and only then
};

// The name of a shape on a command line, and back.
const char* NameOf(Shape shape);
std::optional<Shape> ShapeOf(const std::string& name);

// Without blocks, half of the rows have the class that their place between the first attribute's
// extremes gives (equal slices), the others any class, so that there are cuts to be
// found.
Columns MakeColumns(const ShapedWorkload& workload);

}  // namespace bench
