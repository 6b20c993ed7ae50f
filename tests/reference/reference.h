// A plain second implementation of what a whole binning run computes.  It
// keeps everything in memory, spells every formula out in the order in which
// it is meant, and shares no code with the library, so that the two can be
// compared number by number.  Not for use outside the tests.
//
// Every function is total: NaN, infinities, subnormals and both zeros are
// ordinary input.  Sorting puts NaN last.  Values are compared by ordinary
// equality, so a NaN is never the system-missing value and equals no other NaN.
// Nothing here is kept between two calls of Run.

#ifndef TESTS_REFERENCE_REFERENCE_H
#define TESTS_REFERENCE_REFERENCE_H

#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace reference {

// ----------------------------------------------------------------- the problem

enum Role { kRoleAttribute = 1, kRoleTarget = 2, kRoleWeight = 3 };

enum Level {
  kLevelContinuous = 1,
  kLevelNumericCategorical = 2,
  kLevelStringCategorical = 3,
  kLevelWeight = 4
};

enum Rounding { kRoundDown = 0, kRoundClosest = 1 };  // any other: unchanged

struct Variable {
  enum class Kind { kContinuous, kCategorical, kWeight };

  Kind kind = Kind::kContinuous;
  int role = kRoleAttribute;             // ignored for a weight
  int categories = 2;                    // declared; categorical only
  int level = kLevelNumericCategorical;  // categorical only
  int rounding = kRoundClosest;          // weight only
  // User-missing values; they have no effect on a categorical variable, whose
  // values reach a run as codes.
  std::vector<double> missingValues;
  std::optional<std::pair<double, double>> missingInterval;  // ends included
};

// How tuples of equal value are ordered.  It shows in sums of fractional
// weights (by their last bits) and where a run of equal values goes on into the
// tuples that an earlier attribute left.  Only ties ordered by weight make
// every result with whole weights independent of the order of the records.
enum class Ties { kByCase, kByWeight };

// One request to bin; an equal-frequency run does not look at the targets.
struct Call {
  std::optional<std::vector<int>> attributes;
  std::optional<std::vector<int>> targets;
};

// One host object, fed with one stream of records and asked to bin once per
// call.  At most one variable is the target and at most one the weight, and
// each of the others is an attribute.  Every record has a field per variable.
struct Problem {
  std::vector<Variable> variables;
  std::vector<std::vector<double>> records;
  double missing = std::numeric_limits<double>::lowest();
  bool supervised = true;
  int numberOfBins = -1;
  int distinctThreshold = -1;      // supervised only
  double smallBinThreshold = 0.0;  // supervised only
  bool rightClosed = true;
  Ties ties = Ties::kByCase;
  std::vector<Call> calls;
};

// ----------------------------------------------------------------- the outcome

struct Status {
  long code = 0;
  short severity = 0;  // 0 OK, 1 warning, -1 error
  long discrete[3] = {0, 0, 0};
  double scale[3] = {0.0, 0.0, 0.0};

  bool IsOk() const { return severity == 0; }
  bool IsWarning() const { return severity > 0; }
  bool IsError() const { return severity < 0; }
  bool operator==(const Status&) const = default;
};

struct PairResult {
  Status status;
  int attribute = -1;
  int target = -1;  // -1 in an equal-frequency run
  std::vector<double> cuts;
  // Supervised: bin by bin the bin's weight, then its weight in each category.
  // Equal-frequency: one weight per bin.
  std::vector<double> cellCounts;
  unsigned nDistinct = 0;
  double totalWeight = 0.0;
  double totalWeightWithMissing = 0.0;
  double minimum = 0.0;
  double maximum = 0.0;
  double modelEntropy = 0.0;  // 0 in an equal-frequency run
};

struct Outcome {
  std::vector<Status> callStatuses;
  Status finalStatus;               // what the object says at the very end
  std::vector<PairResult> results;  // in the order stored
};

// Bins the problem.  A variable list that is not fit for binning gives no call
// status and no result, and the rejection (120003) as the final status.
Outcome Run(const Problem& problem);

// ------------------------------------------------------------- building blocks

// One case of one attribute.  Equal-frequency binning has no use for `target`.
struct Tuple {
  double value = 0.0;
  double weight = 0.0;
  int target = 0;
};

// Ascending, NaN after everything else, both zeros alike.
bool NumberLess(double a, double b);

// The weight after rounding, or `missing` when the case is to be dropped.
double EncodeWeight(const Variable& weight, double value, double missing);

// Where the walk over sorted tuples stands between two percentiles.
struct Walk {
  std::size_t index = 0;  // the next unread tuple, at most their number
  double cumulative = 0.0;
  double previousCumulative = 0.0;
};

// Moves `walk` to `percent` of `totalWeight` and returns the cut there; `cuts`
// are those found before.  Appends to `frequencies` unless it is null.
double PercentileStep(std::span<const Tuple> tuples, const std::vector<double>& cuts,
                      double percent, double totalWeight, bool includeUpper, double missing,
                      Walk& walk, std::vector<double>* frequencies);

struct Percentiles {
  bool computed = false;  // false: no bins, no tuples or no positive weight
  std::vector<double> cuts;
  std::vector<double> frequencies;  // empty when they were not asked for
};

// The equal-frequency cuts of sorted tuples.  Pass the vector of tuples in its
// full length: its last value counts as the largest one even when the tuples
// that belong to the attribute end before it.
Percentiles PercentileCuts(std::span<const Tuple> tuples, int bins, bool includeUpper,
                           bool withFrequencies, double totalWeight, double missing);

// Class counts: the total weight, then the weight of each category.
double Entropy(const std::vector<double>& classCounts);
double SplitEntropy(const std::vector<double>& left, const std::vector<double>& right);
double Delta(const std::vector<double>& left, const std::vector<double>& right, double entropyAll);

struct Split {
  int position = 0;
  std::vector<double> left;   // class counts of the rows on the lower side
  std::vector<double> right;  // and on the upper side
};

// The best split of rows first to last (both included) of a table of class
// weights, row by row, `categories` to a row.  Wants 0 <= first <= last.
Split BestSplit(const std::vector<double>& counts, std::size_t categories, int first, int last,
                bool rightClosed);

// Splits rows first to last as long as the test accepts, and adds the values of
// the accepted cuts to `cuts`, which stay ascending and free of duplicates.
// Error 120002, with `cuts` untouched, when the sizes do not fit together.
Status MdlpCut(const std::vector<double>& values, const std::vector<double>& counts,
               std::size_t categories, int first, int last, bool rightClosed,
               std::vector<double>& cuts);

// The class weights of each bin between neighbouring borders, a row per bin.
// Warning 120002 when the borders do not cover the sorted tuples.
Status CreateBinTable(std::span<const Tuple> tuples, const std::vector<double>& borders,
                      std::size_t categories, bool rightClosed, std::vector<double>& table);

// Merges inner bins lighter than `threshold` times their lighter neighbour.
void MergeSmallBins(double threshold, std::size_t categories, std::vector<double>& cellCounts,
                    std::vector<double>& cuts);

// The weighted mean entropy of the bins.
double ModelEntropy(const std::vector<double>& cellCounts, std::size_t categories,
                    double totalWeight);

struct MdlpResult {
  Status status;
  std::vector<double> cuts;
  std::vector<double> cellCounts;
  double modelEntropy = 0.0;  // system-missing when there are no cell counts
};

struct MdlpOptions {
  std::size_t categories = 0;
  bool rightClosed = true;
  double smallBinThreshold = 0.0;
  double totalWeight = 0.0;
  double missing = std::numeric_limits<double>::lowest();
};

// Bins at least one sorted tuple over its distinct values, and over the bins
// between percentile cuts.
MdlpResult MdlpOverValues(std::span<const Tuple> tuples, const MdlpOptions& options);
MdlpResult MdlpOverPercentiles(std::span<const Tuple> tuples,
                               const std::vector<double>& percentileCuts,
                               const MdlpOptions& options);

}  // namespace reference

#endif  // TESTS_REFERENCE_REFERENCE_H
