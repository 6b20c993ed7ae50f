#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include <tqbinning/tqbinning.h>
#include <tqcommon/tqcommon.h>

namespace TQTool {

enum class Method { kSupervised, kEqualFrequency };

// A range of numbers, both ends included; an end without a bound is infinite.
struct ClosedRange {
  double lower = -std::numeric_limits<double>::infinity();
  double upper = std::numeric_limits<double>::infinity();

  bool operator==(const ClosedRange&) const = default;
};

// What is taken for missing in one column besides the missing-value texts: numbers
// and at most one range, or, for a target, texts.
struct MissingRule {
  std::vector<double> numbers;
  std::optional<ClosedRange> range;
  std::vector<std::string> texts;

  bool Contains(double number) const;

  bool operator==(const MissingRule&) const = default;
};

// The weight's scale that divides by the mean of the weights.
inline constexpr const char* kMeanScale = "mean";

// The settings of a run that decide about its result.
struct Settings {
  int bins = 0;             // equal frequency: how many were asked for
  int prebinThreshold = 0;  // supervised: pre-bin beyond this many distinct values; 0 = never
  int prebinBins = 1000;    // supervised: into how many bins
  double minBinFactor = 0.0;
  bool isRightClosed = true;
  std::string weight;                      // empty for none
  std::string weightRounding = "closest";  // closest, down, none
  std::string weightScale;                 // empty for none, kMeanScale, or a number to multiply by
  double weightDivisor = TQMV::gMissingValue;  // what kMeanScale came to; else not known
  MissingRule weightMissing;
  std::vector<std::string> missingTokens;  // texts that stand for a missing value everywhere

  bool operator==(const Settings&) const = default;
};

// What was read, and what of it counted.
struct InputSummary {
  std::vector<std::string> names;
  std::uint64_t rows = 0;
  std::uint64_t cases = 0;  // rows that count
  double weight = 0.0;      // of the cases, as it was counted
  // Why the other rows did not count.
  std::uint64_t droppedWeightMissing = 0;
  std::uint64_t droppedWeightNotPositive = 0;
  std::uint64_t droppedWeightRoundedAway = 0;  // above zero, but not when made whole

  bool operator==(const InputSummary&) const = default;
};

struct Target {
  std::string name;
  std::vector<std::string> categories;  // in the order of every bin's class counts
  std::uint64_t missingCases = 0;       // cases without a category
  MissingRule missing;

  bool operator==(const Target&) const = default;
};

// A number of cases: their weight, and how many rows they are.
struct Count {
  double weight = TQMV::gMissingValue;  // gMissingValue when it is not known
  double rows = TQMV::gMissingValue;    // the same

  bool operator==(const Count&) const = default;
};

// One bin of a column.  Which of its ends belongs to it, its column tells.
struct Bin {
  double lower = -std::numeric_limits<double>::infinity();
  double upper = std::numeric_limits<double>::infinity();
  Count count;
  std::vector<Count> categories;  // as the target's; empty without target

  bool operator==(const Bin&) const = default;
};

// What came of one column, against one target or none.  A number that is not known is
// TQMV::gMissingValue.
struct BinnedAttribute {
  std::string name;
  std::optional<std::size_t> target;  // index into the model's targets
  TQBinning::TQStatus status;
  bool isRightClosed = true;        // (2, 5] rather than [2, 5)
  std::vector<double> cuts;         // ascending
  std::vector<std::string> labels;  // one per bin; empty: the intervals name the bins
  MissingRule missing;
  std::vector<Bin> bins;  // one more than cuts; none when no case could be binned
  Count valid;            // cases with a value (and a category)
  Count total;            // all cases
  double minimum = TQMV::gMissingValue;
  double maximum = TQMV::gMissingValue;
  std::uint64_t numDistinct = 0;
  double entropy = TQMV::gMissingValue;  // weighted mean of the bins' class entropies, in bits
  bool isPreBinned = false;              // so its cuts are borders of pre-bins
  bool isEdited = false;                 // cut points were changed after the bins had been counted

  bool operator==(const BinnedAttribute&) const = default;
};

// What a run found out, with all that is needed to judge and to apply it: the content
// of a model file.
struct Model {
  std::string toolVersion;
  std::string created;  // UTC, ISO 8601; empty unless it was asked for
  Method method = Method::kSupervised;
  InputSummary input;
  Settings settings;
  std::vector<Target> targets;  // none for equal frequency
  TQBinning::TQStatus status;
  std::vector<BinnedAttribute> attributes;  // a column occurs once for each of its targets

  // The target of an attribute; null without.
  const Target* TargetOf(const BinnedAttribute& attribute) const {
    return attribute.target.has_value() ? &targets.at(*attribute.target) : nullptr;
  }

  // How many columns have bins, be it against several targets.
  std::size_t CountColumns() const;

  bool operator==(const Model&) const = default;
};

// How the command is called that makes such a model: "supervised" or "equal-frequency".
const char* NameOf(Method method);

// "(2, 5]" or "[2, 5)", with shortest round-trip doubles; an end without bound is open.
std::string IntervalText(const BinnedAttribute& attribute, std::size_t bin);

// The bin's label, or its interval when it has none.
std::string LabelOf(const BinnedAttribute& attribute, std::size_t bin);

// The bin (from 0, one more than cuts) of a number.
std::size_t BinOf(const BinnedAttribute& attribute, double value);

// The bins between cut points, not counted yet.
std::vector<Bin> EmptyBins(const std::vector<double>& cuts);

}  // namespace TQTool
