#include "reference.h"

#include <algorithm>
#include <cmath>

namespace reference {
namespace {

// ------------------------------------------------------------------- constants

constexpr long kBadTable = 120002;
constexpr long kBadVariableList = 120003;
constexpr long kNoCase = 120004;
constexpr long kIndexHasOtherUse = 120005;
constexpr long kTargetNotCategorical = 120006;
constexpr long kNoValidPair = 120008;
constexpr long kBadNumberOfBins = 120009;
constexpr long kBadTarget = 120010;
constexpr long kBadAttribute = 120011;
constexpr long kBadCode = 120012;
constexpr long kBadIndex = 120013;
constexpr long kOneDistinctValue = 120014;
constexpr long kNoValidCase = 120015;
constexpr long kOneTargetClass = 120016;
constexpr long kNoCutAccepted = 120017;
constexpr long kSomeNotOk = 120018;
constexpr long kNoPercentile = 120019;

constexpr double kLn2 = 0.6931471805599453;
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kPercentTolerance = 2.220446049250313e-14;
constexpr double kWeightTolerance = 2.220446049250313e-16;
constexpr int kLargestCode = 255;

// --------------------------------------------------------------- small helpers

Status Warning(long code) {
  Status status;
  status.code = code;
  status.severity = 1;
  return status;
}

Status Error(long code) {
  Status status = Warning(code);
  status.severity = -1;
  return status;
}

Status WithDatum(Status status, std::size_t slot, long datum) {
  status.discrete[slot] = datum;
  return status;
}

std::size_t Position(int index) { return static_cast<std::size_t>(index); }

double Log2(double x) { return std::log(x) / kLn2; }

// The value without its fraction, or nothing when that does not fit an int.
std::optional<int> Truncate(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return std::nullopt;
  return static_cast<int>(value);
}

bool IsCode(const std::optional<int>& code) { return code && *code >= 0 && *code <= kLargestCode; }

}  // namespace

bool NumberLess(double a, double b) {
  if (std::isnan(a)) return false;
  if (std::isnan(b)) return true;
  return a < b;
}

namespace {

// ------------------------------------------------------------------- variables

int LevelOf(const Variable& variable) {
  switch (variable.kind) {
    case Variable::Kind::kContinuous: return kLevelContinuous;
    case Variable::Kind::kWeight: return kLevelWeight;
    case Variable::Kind::kCategorical: break;
  }
  return variable.level;
}

int RoleOf(const Variable& variable) {
  if (variable.kind == Variable::Kind::kWeight) return kRoleWeight;
  return variable.role;
}

int CategoriesOf(const Variable& variable) {
  return variable.kind == Variable::Kind::kCategorical ? variable.categories : 0;
}

bool HasCategories(const Variable& variable) {
  const int level = LevelOf(variable);
  return level == kLevelNumericCategorical || level == kLevelStringCategorical;
}

bool IsUserMissing(const Variable& variable, double value) {
  for (const double missing : variable.missingValues) {
    if (missing == value) return true;
  }
  return variable.missingInterval && variable.missingInterval->first <= value &&
         value <= variable.missingInterval->second;
}

// The first variable with the role, -1 when there is none.
int FindRole(const std::vector<Variable>& variables, int role) {
  for (std::size_t k = 0; k < variables.size(); ++k) {
    if (RoleOf(variables[k]) == role) return static_cast<int>(k);
  }
  return -1;
}

int CountCategorical(const std::vector<Variable>& variables) {
  int count = 0;
  for (const Variable& variable : variables) {
    if (variable.kind == Variable::Kind::kCategorical) ++count;
  }
  return count;
}

// OK, or the factory's refusal.  A variable without a category is reported
// before one with a single category.
Status CheckVariables(const std::vector<Variable>& variables) {
  int firstEmpty = -1;
  int firstSingle = -1;
  for (std::size_t k = 0; k < variables.size(); ++k) {
    if (variables[k].kind != Variable::Kind::kCategorical) continue;
    const int index = static_cast<int>(k);
    const int categories = variables[k].categories;
    if (categories < 1 && firstEmpty < 0) firstEmpty = index;
    if (categories == 1 && firstSingle < 0) firstSingle = index;
  }
  const bool hasAttribute = FindRole(variables, kRoleAttribute) >= 0;
  if (hasAttribute && firstEmpty < 0 && firstSingle < 0) return Status();
  return WithDatum(Error(kBadVariableList), 1, firstEmpty >= 0 ? firstEmpty : firstSingle);
}

}  // namespace

double EncodeWeight(const Variable& weight, double value, double missing) {
  if (value == missing) return missing;
  if (IsUserMissing(weight, value)) return missing;
  double rounded = value;
  if (weight.rounding == kRoundDown) rounded = std::floor(value);
  if (weight.rounding == kRoundClosest) rounded = std::floor(value + 0.5);
  if (rounded > 0.0 || std::isnan(rounded)) return rounded;
  return missing;
}

namespace {

// --------------------------------------------------- the pass over the records

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

// Prepares records one by one, into `fPrepared`.
class Pass {
 public:
  explicit Pass(const Problem& problem)
      : fProblem(problem),
        fTarget(FindRole(problem.variables, kRoleTarget)),
        fWeight(FindRole(problem.variables, kRoleWeight)) {
    fPrepared.columns.resize(problem.variables.size());
  }

  Prepared Run() {
    for (const std::vector<double>& record : fProblem.records) {
      const Status status = Process(record);
      if (status.IsError()) {
        fPrepared.status = status;
        return fPrepared;
      }
    }
    if (fPrepared.keptCases == 0) {
      fPrepared.status = Error(kNoCase);
      return fPrepared;
    }
    DiscardColumnsWithUndeclaredCodes();
    return fPrepared;
  }

 private:
  // Only an error matters to the caller: warnings of a record are not kept.
  Status Process(const std::vector<double>& record) {
    std::vector<double> out(fProblem.variables.size(), 0.0);
    if (fWeight >= 0) {
      const std::size_t k = Position(fWeight);
      out[k] = EncodeWeight(fProblem.variables[k], record.at(k), fProblem.missing);
      if (out[k] == fProblem.missing) return Status();  // dropped
    }
    if (fTarget >= 0) {
      const Status status = PrepareTarget(record, out);
      if (status.IsError()) return status;
    }
    for (std::size_t k = 0; k < out.size(); ++k) {
      if (RoleOf(fProblem.variables[k]) != kRoleAttribute) continue;
      out[k] = PrepareAttribute(k, record.at(k));
    }
    Keep(out);
    return Status();
  }

  // A target is missing when its whole part is -1; an attribute only when it is
  // -1 itself.
  Status PrepareTarget(const std::vector<double>& record, std::vector<double>& out) {
    const std::size_t k = Position(fTarget);
    const double value = record.at(k);
    const std::optional<int> code = Truncate(value);
    if (value == fProblem.missing || code == -1) {
      out[k] = fProblem.missing;
      return Status();
    }
    Column& column = fPrepared.columns[k];
    if (!column.usable) return Status();
    if (!IsCode(code)) {
      column.usable = false;
      const bool others = CountCategorical(fProblem.variables) >= 2;
      return WithDatum(others ? Warning(kBadCode) : Error(kBadCode), 0, fTarget);
    }
    column.largestCode = std::max(column.largestCode, *code);
    out[k] = value;
    return Status();
  }

  double PrepareAttribute(std::size_t k, double value) {
    const Variable& variable = fProblem.variables[k];
    if (LevelOf(variable) == kLevelContinuous) {
      const bool isMissing =
          variable.kind == Variable::Kind::kContinuous && IsUserMissing(variable, value);
      return isMissing ? fProblem.missing : value;
    }
    if (value == fProblem.missing || value == -1.0) return fProblem.missing;
    Column& column = fPrepared.columns[k];
    const std::optional<int> code = Truncate(value);
    if (!IsCode(code)) column.usable = false;
    if (!column.usable) return 0.0;
    column.largestCode = std::max(column.largestCode, *code);
    return value;
  }

  void Keep(const std::vector<double>& out) {
    for (std::size_t k = 0; k < out.size(); ++k) {
      Column& column = fPrepared.columns[k];
      if (column.usable) column.values.push_back(out[k]);
    }
    ++fPrepared.keptCases;
  }

  void DiscardColumnsWithUndeclaredCodes() {
    for (std::size_t k = 0; k < fPrepared.columns.size(); ++k) {
      const Variable& variable = fProblem.variables[k];
      Column& column = fPrepared.columns[k];
      if (HasCategories(variable) && column.largestCode >= CategoriesOf(variable)) {
        column.usable = false;
      }
    }
  }

  const Problem& fProblem;
  const int fTarget;
  const int fWeight;
  Prepared fPrepared;
};

// ----------------------------------------------------- from a column to tuples

// Hands out the values of a column and, once they are used up, zeros.
class Reader {
 public:
  explicit Reader(const std::vector<double>& values) : fValues(&values) {}

  bool HasMore() const { return fNext < fValues->size(); }
  double Next() { return HasMore() ? (*fValues)[fNext++] : 0.0; }

 private:
  const std::vector<double>* fValues;
  std::size_t fNext = 0;
};

struct Extract {
  std::size_t valid = 0;
  unsigned nDistinct = 0;
  double validWeight = 0.0;
  double allWeight = 0.0;
  double minimum = 0.0;
  double maximum = 0.0;
};

unsigned CountDistinct(std::span<const Tuple> tuples) {
  if (tuples.empty()) return 0;
  unsigned count = 1;
  for (std::size_t i = 1; i < tuples.size(); ++i) {
    if (tuples[i - 1].value != tuples[i].value) ++count;
  }
  return count;
}

void SortByValue(std::span<Tuple> tuples, Ties ties) {
  if (ties == Ties::kByWeight) {
    std::stable_sort(tuples.begin(), tuples.end(),
                     [](const Tuple& a, const Tuple& b) { return NumberLess(a.weight, b.weight); });
  }
  std::stable_sort(tuples.begin(), tuples.end(),
                   [](const Tuple& a, const Tuple& b) { return NumberLess(a.value, b.value); });
}

// Reads the columns in step, puts the valid cases at the front of `tuples`
// (null: only counts them) and sorts them.  What earlier attributes left behind
// them stays.  `target` and `weight` may be null.
Extract ReadAttribute(const Column& attribute, const Column* target, const Column* weight,
                      const Problem& problem, std::vector<Tuple>* tuples) {
  const double missing = problem.missing;
  Reader values(attribute.values);
  std::optional<Reader> targets;
  std::optional<Reader> weights;
  if (target != nullptr) targets.emplace(target->values);
  if (weight != nullptr) weights.emplace(weight->values);
  const Reader& leader = targets ? *targets : weights ? *weights : values;

  Extract extract;
  while (leader.HasMore()) {
    const double code = targets ? targets->Next() : 0.0;
    const double caseWeight = weights ? weights->Next() : 1.0;
    const double value = values.Next();
    if (weights && caseWeight == missing) continue;
    extract.allWeight += caseWeight;
    if (targets && code == missing) continue;
    if (value == missing) continue;
    extract.validWeight += caseWeight;
    if (tuples != nullptr) {
      tuples->at(extract.valid) = Tuple{value, caseWeight, Truncate(code).value_or(0)};
    }
    ++extract.valid;
  }

  const std::size_t stored = tuples != nullptr ? extract.valid : 0;
  extract.minimum = missing;
  extract.maximum = missing;
  if (stored == 0) return extract;
  const std::span<Tuple> front(tuples->data(), stored);
  SortByValue(front, problem.ties);
  extract.nDistinct = CountDistinct(front);
  extract.minimum = front.front().value;
  extract.maximum = front.back().value;
  return extract;
}

// ----------------------------------------------------------------- percentiles

double TargetWeight(double percent, double totalWeight) {
  if (std::fabs(percent - 100.0) <= kPercentTolerance) return totalWeight;
  return percent / 100.0 * totalWeight;
}

// Two zeros or two infinities give no quotient, and so do not count as met.
bool IsMet(double cumulative, double target) {
  const double difference = std::fabs(cumulative - target);
  return difference / std::max(cumulative, target) <= kWeightTolerance;
}

// How far one step of the walk went.
struct Advance {
  std::size_t index = 0;
  std::size_t runs = 0;  // runs of equal values taken
  double after = 0.0;    // cumulative weight at the end
  double before = 0.0;   // and before the last run; `after` when met
  bool met = false;      // ended on the target, with a tuple left
};

Advance TakeRuns(std::span<const Tuple> tuples, double target, const Walk& walk) {
  Advance advance;
  advance.index = walk.index;
  advance.after = walk.cumulative;
  advance.before = walk.cumulative;
  while (advance.index < tuples.size()) {
    if (IsMet(advance.after, target)) {
      advance.met = true;
      advance.before = advance.after;
      break;
    }
    if (!(advance.after < target)) break;
    advance.before = advance.after;
    const double value = tuples[advance.index].value;
    // The first tuple belongs to its run even if it is a NaN.
    do {
      advance.after += tuples[advance.index].weight;
      ++advance.index;
    } while (advance.index < tuples.size() && tuples[advance.index].value == value);
    ++advance.runs;
  }
  return advance;
}

double CutAt(std::span<const Tuple> tuples, const Advance& advance, double missing) {
  const std::size_t index = advance.index;
  if (index == 0) return missing;  // no value to stand on
  if (advance.met) return (tuples[index - 1].value + tuples[index].value) / 2.0;
  if (advance.runs > 0) return tuples[index - 1].value;
  return missing;
}

// Bins closed on the right: the run at the cut belongs to the closing bin.
void PushClosedOnTheRight(const Walk& entry, const Advance& advance, double target,
                          double totalWeight, std::vector<double>& frequencies) {
  const bool overshot = !advance.met && advance.after > target;
  if (overshot || target == totalWeight) {
    frequencies.push_back(advance.after - entry.cumulative);
  } else if (advance.before != 0.0) {
    frequencies.push_back(advance.before - entry.cumulative);
  }
}

// Bins closed on the left: the run at the cut opens the next bin.
void PushClosedOnTheLeft(const Walk& entry, const Advance& advance, double target,
                         double totalWeight, std::vector<double>& frequencies) {
  if (advance.before == 0.0) {
    const bool push = advance.runs >= 2 || entry.index != 0;
    frequencies.push_back(push ? advance.after : 0.0);
    return;
  }
  if (target == totalWeight) {
    frequencies.push_back(advance.after - entry.previousCumulative);
    return;
  }
  frequencies.push_back(advance.before - entry.previousCumulative);
  if (advance.after == totalWeight) {
    frequencies.push_back(advance.after - advance.before);
  }
}

}  // namespace

double PercentileStep(std::span<const Tuple> tuples, const std::vector<double>& cuts,
                      double percent, double totalWeight, bool includeUpper, double missing,
                      Walk& walk, std::vector<double>* frequencies) {
  const double target = TargetWeight(percent, totalWeight);
  // One heavy run may span several percentiles: all of them share its cut.
  if (walk.cumulative >= target && walk.index > 0 && !cuts.empty() &&
      tuples[walk.index - 1].value == cuts.back()) {
    return tuples[walk.index - 1].value;
  }
  const Advance advance = TakeRuns(tuples, target, walk);
  if (frequencies != nullptr) {
    if (includeUpper) {
      PushClosedOnTheRight(walk, advance, target, totalWeight, *frequencies);
    } else {
      PushClosedOnTheLeft(walk, advance, target, totalWeight, *frequencies);
    }
    walk.previousCumulative = advance.before;
  }
  walk.index = advance.index;
  walk.cumulative = advance.after;  // also where the target was met: both alike
  return CutAt(tuples, advance, missing);
}

namespace {

// A cut on the edge of the data separates nothing.
void RemoveOuterCut(std::span<const Tuple> tuples, bool includeUpper, Percentiles& percentiles) {
  std::vector<double>& cuts = percentiles.cuts;
  std::vector<double>& frequencies = percentiles.frequencies;
  if (cuts.empty()) return;
  if (includeUpper) {
    // The weight of the last bin stays: it is the bin below the removed cut.
    if (cuts.back() == tuples.back().value) cuts.pop_back();
  } else if (cuts.front() == tuples.front().value) {
    cuts.erase(cuts.begin());
    if (!frequencies.empty()) frequencies.erase(frequencies.begin());
  }
}

// Drops the bins of weight zero, each with the cut that closes it, the last one
// with the last cut kept.
void DropEmptyBins(Percentiles& percentiles) {
  const std::vector<double> cuts = std::move(percentiles.cuts);
  const std::vector<double> frequencies = std::move(percentiles.frequencies);
  percentiles.cuts.clear();
  percentiles.frequencies.clear();
  const std::size_t paired = std::min(cuts.size(), frequencies.size());
  for (std::size_t i = 0; i < paired; ++i) {
    if (frequencies[i] == 0.0) continue;
    percentiles.cuts.push_back(cuts[i]);
    percentiles.frequencies.push_back(frequencies[i]);
  }
  if (frequencies.size() <= cuts.size()) return;
  const double last = frequencies[cuts.size()];
  if (last != 0.0) {
    percentiles.frequencies.push_back(last);
  } else if (!percentiles.cuts.empty()) {
    percentiles.cuts.pop_back();
  }
}

}  // namespace

Percentiles PercentileCuts(std::span<const Tuple> tuples, int bins, bool includeUpper,
                           bool withFrequencies, double totalWeight, double missing) {
  Percentiles percentiles;
  if (bins < 1 || tuples.empty() || !(totalWeight > 0.0)) return percentiles;
  percentiles.computed = true;

  Walk walk;
  for (int i = 0; i < bins; ++i) {
    const double percent = std::min((i + 1.0) * (100.0 / bins), 100.0);
    const double cut =
        PercentileStep(tuples, percentiles.cuts, percent, totalWeight, includeUpper, missing, walk,
                       withFrequencies ? &percentiles.frequencies : nullptr);
    if (i == bins - 1) break;  // only completes the frequencies
    if (i > 0 && cut == percentiles.cuts.back()) continue;
    percentiles.cuts.push_back(cut);
  }
  if (!withFrequencies) return percentiles;

  RemoveOuterCut(tuples, includeUpper, percentiles);
  if (percentiles.cuts.empty() && percentiles.frequencies.empty()) {
    percentiles.frequencies.push_back(totalWeight);
  }
  DropEmptyBins(percentiles);
  return percentiles;
}

// ---------------------------------------------------------- entropy and splits

double Entropy(const std::vector<double>& classCounts) {
  if (classCounts.size() < 2 || classCounts[0] == 0.0) return 0.0;
  double entropy = 0.0;
  for (std::size_t j = 1; j < classCounts.size(); ++j) {
    const double p = classCounts[j] / classCounts[0];
    if (p != 0.0) entropy -= p * Log2(p);
  }
  return entropy;
}

double SplitEntropy(const std::vector<double>& left, const std::vector<double>& right) {
  return (left[0] * Entropy(left) + right[0] * Entropy(right)) / (left[0] + right[0]);
}

namespace {

int CountCategoriesPresent(const std::vector<double>& classCounts) {
  int count = 0;
  for (std::size_t j = 1; j < classCounts.size(); ++j) {
    if (classCounts[j] != 0.0) ++count;
  }
  return count;
}

// A table of class weights, row by row.
class Table {
 public:
  Table(const std::vector<double>& counts, std::size_t categories)
      : fCounts(counts), fCategories(categories) {}

  std::size_t Categories() const { return fCategories; }

  double At(int row, std::size_t category) const {
    return fCounts.at(Position(row) * fCategories + category);
  }

  std::vector<double> NoCounts() const { return std::vector<double>(fCategories + 1, 0.0); }

  // The class counts of rows first to last, entry 0 their sum.
  std::vector<double> Sum(int first, int last) const {
    std::vector<double> sum = NoCounts();
    for (int row = first; row <= last; ++row) {
      for (std::size_t j = 0; j < fCategories; ++j) sum[j + 1] += At(row, j);
    }
    SumUp(sum);
    return sum;
  }

  static void SumUp(std::vector<double>& classCounts) {
    classCounts[0] = 0.0;
    for (std::size_t j = 1; j < classCounts.size(); ++j) {
      classCounts[0] += classCounts[j];
    }
  }

  // Takes a row from `right` and gives it to `left`.
  void MoveRow(int row, std::vector<double>& left, std::vector<double>& right) const {
    for (std::size_t j = 0; j < fCategories; ++j) {
      const double weight = At(row, j);
      left[j + 1] += weight;
      left[0] += weight;
      right[j + 1] -= weight;
      right[0] -= weight;
    }
  }

  // The one category present in the row; nothing if there are none or several.
  std::optional<std::size_t> OnlyCategory(int row) const {
    std::optional<std::size_t> only;
    for (std::size_t j = 0; j < fCategories; ++j) {
      if (At(row, j) == 0.0) continue;
      if (only) return std::nullopt;
      only = j;
    }
    return only;
  }

  // Two rows that are pure in the same category have no boundary between them.
  bool IsBoundary(int row, int last) const {
    if (row >= last) return false;
    const std::optional<std::size_t> here = OnlyCategory(row);
    return !here || here != OnlyCategory(row + 1);
  }

 private:
  const std::vector<double>& fCounts;
  const std::size_t fCategories;
};

std::vector<double> Difference(const std::vector<double>& all, const std::vector<double>& part) {
  std::vector<double> rest(all.size(), 0.0);
  for (std::size_t j = 1; j < all.size(); ++j) rest[j] = all[j] - part[j];
  Table::SumUp(rest);
  return rest;
}

// The last row on the left of a cut at `position`.
int LastLeftRow(int position, bool rightClosed) { return rightClosed ? position : position - 1; }

// The leftmost position of least entropy; 0 when none was worth a look.
int BestPosition(const Table& table, int first, int last, bool rightClosed) {
  std::vector<double> left = table.NoCounts();
  std::vector<double> right = table.Sum(first, last);
  int nextRow = first;  // the first row still in `right`
  std::optional<double> best;
  int bestPosition = 0;
  bool previousIsBoundary = false;
  for (int position = first; position <= last; ++position) {
    const bool boundary = table.IsBoundary(position, last);
    // With bins closed on the left, the split between two rows is made at the
    // second one: hence one position more after each boundary.
    const bool evaluate = boundary || previousIsBoundary;
    previousIsBoundary = boundary;
    if (!evaluate) continue;
    for (; nextRow <= LastLeftRow(position, rightClosed); ++nextRow) {
      table.MoveRow(nextRow, left, right);
    }
    const double entropy = SplitEntropy(left, right);
    if (!best || entropy < *best) {
      best = entropy;
      bestPosition = position;
    }
  }
  return bestPosition;
}

}  // namespace

double Delta(const std::vector<double>& left, const std::vector<double>& right, double entropyAll) {
  const double leftCategories = CountCategoriesPresent(left);
  const double rightCategories = CountCategoriesPresent(right);
  const double categories = leftCategories + rightCategories;
  return Log2(std::pow(3.0, categories) - 2.0) -
         (categories * entropyAll - leftCategories * Entropy(left) -
          rightCategories * Entropy(right));
}

Split BestSplit(const std::vector<double>& counts, std::size_t categories, int first, int last,
                bool rightClosed) {
  const Table table(counts, categories);
  Split split;
  split.position = BestPosition(table, first, last, rightClosed);

  // Built anew, from the shorter side, so that no error of the many moves is
  // left in the counts.
  const std::vector<double> all = table.Sum(first, last);
  const int lastLeft = LastLeftRow(split.position, rightClosed);
  const double middle = (static_cast<double>(first) + last) * 0.5;
  if (middle < split.position) {
    split.right = table.Sum(lastLeft + 1, last);
    split.left = Difference(all, split.right);
  } else {
    split.left = table.Sum(first, lastLeft);
    split.right = Difference(all, split.left);
  }
  return split;
}

// ------------------------------------------------------------------------ MDLP

namespace {

void InsertCut(std::vector<double>& cuts, double cut) {
  const auto place = std::lower_bound(cuts.begin(), cuts.end(), cut, NumberLess);
  const bool present = place != cuts.end() && !NumberLess(cut, *place);
  if (!present) cuts.insert(place, cut);
}

// A comparison with NaN rejects, and so does equality.
bool IsAccepted(const Split& split, const std::vector<double>& all) {
  const double weight = all[0];
  const double entropyAll = Entropy(all);
  const double gain = entropyAll - SplitEntropy(split.left, split.right);
  const double delta = Delta(split.left, split.right, entropyAll);
  return gain > delta / weight + Log2(weight - 1.0) / weight;
}

}  // namespace

Status MdlpCut(const std::vector<double>& values, const std::vector<double>& counts,
               std::size_t categories, int first, int last, bool rightClosed,
               std::vector<double>& cuts) {
  if (categories == 0 || counts.size() / categories != values.size()) {
    return Error(kBadTable);
  }
  const Table table(counts, categories);
  std::vector<std::pair<int, int>> intervals = {{first, last}};
  while (!intervals.empty()) {
    const auto [low, high] = intervals.back();
    intervals.pop_back();
    if (high - low < 1) continue;
    const Split split = BestSplit(counts, categories, low, high, rightClosed);
    if (!IsAccepted(split, table.Sum(low, high))) continue;
    InsertCut(cuts, values[Position(split.position)]);
    const int lastLeft = LastLeftRow(split.position, rightClosed);
    // A side without rows: splitting on would never end.
    if (lastLeft < low || lastLeft >= high) continue;
    intervals.push_back({lastLeft + 1, high});
    intervals.push_back({low, lastLeft});
  }
  return Status();
}

Status CreateBinTable(std::span<const Tuple> tuples, const std::vector<double>& borders,
                      std::size_t categories, bool rightClosed, std::vector<double>& table) {
  if (borders.empty()) return Warning(kBadTable);
  const std::size_t bins = borders.size() - 1;
  table.assign(bins * categories, 0.0);
  std::vector<double> row(categories, 0.0);
  std::size_t bin = 1;  // counted from 1: border `bin` ends it

  const auto storeRow = [&] {
    const std::size_t start = (bin - 1) * categories;
    for (std::size_t j = 0; j < categories; ++j) table[start + j] = row[j];
    row.assign(categories, 0.0);
  };
  const auto belongs = [&](double value) {
    return rightClosed ? value <= borders[bin] : value < borders[bin];
  };

  for (const Tuple& tuple : tuples) {
    while (bin <= bins && !belongs(tuple.value)) {
      storeRow();
      ++bin;
    }
    if (bin > bins) break;
    row.at(Position(tuple.target)) += tuple.weight;
  }
  if (bin != bins) return Warning(kBadTable);
  storeRow();
  return Status();
}

namespace {

// The class counts of one bin.
std::vector<double> BinAt(const std::vector<double>& cellCounts, std::size_t categories,
                          std::size_t bin) {
  const auto width = static_cast<std::ptrdiff_t>(categories + 1);
  const auto start = cellCounts.begin() + static_cast<std::ptrdiff_t>(bin) * width;
  return std::vector<double>(start, start + width);
}

std::vector<double> Together(std::vector<double> a, const std::vector<double>& b) {
  for (std::size_t j = 0; j < a.size(); ++j) a[j] += b[j];
  return a;
}

// The bins to merge with the bin above each, judged before anything is merged.
std::vector<std::size_t> FindMerges(double threshold,
                                    const std::vector<std::vector<double>>& bins) {
  std::vector<std::size_t> merges;
  for (std::size_t b = 1; b + 1 < bins.size(); ++b) {
    const std::vector<double>& before = bins[b - 1];
    const std::vector<double>& after = bins[b + 1];
    const double lighter = after[0] < before[0] ? after[0] : before[0];
    if (!(bins[b][0] < threshold * lighter)) continue;
    const double withLeft = SplitEntropy(Together(before, bins[b]), after);
    const double withRight = SplitEntropy(Together(bins[b], after), before);
    // A tie goes to the left, a comparison with NaN to the right.
    merges.push_back(withLeft <= withRight ? b - 1 : b);
  }
  return merges;
}

}  // namespace

void MergeSmallBins(double threshold, std::size_t categories, std::vector<double>& cellCounts,
                    std::vector<double>& cuts) {
  std::vector<std::vector<double>> bins;
  for (std::size_t b = 0; b <= cuts.size(); ++b) {
    bins.push_back(BinAt(cellCounts, categories, b));
  }
  // Whether the lower bin is given to the upper or the other way round, the two
  // leave one bin with both their weights in the place of the lower one.
  std::size_t merged = 0;
  for (const std::size_t found : FindMerges(threshold, bins)) {
    const std::size_t lower = found - merged;
    const auto offset = static_cast<std::ptrdiff_t>(lower);
    bins[lower] = Together(bins[lower], bins[lower + 1]);
    bins.erase(bins.begin() + offset + 1);
    cuts.erase(cuts.begin() + offset);
    ++merged;
  }
  cellCounts.clear();
  for (const std::vector<double>& bin : bins) {
    cellCounts.insert(cellCounts.end(), bin.begin(), bin.end());
  }
}

double ModelEntropy(const std::vector<double>& cellCounts, std::size_t categories,
                    double totalWeight) {
  double sum = 0.0;
  const std::size_t bins = cellCounts.size() / (categories + 1);
  for (std::size_t b = 0; b < bins; ++b) {
    const std::vector<double> bin = BinAt(cellCounts, categories, b);
    sum += bin[0] * Entropy(bin);
  }
  return sum / totalWeight;
}

namespace {

// Adds the rows of the table up, from cut to cut.
std::vector<double> CellCounts(const std::vector<double>& values, const std::vector<double>& counts,
                               const std::vector<double>& cuts, std::size_t categories,
                               bool rightClosed) {
  const std::size_t width = categories + 1;
  std::vector<double> cells((cuts.size() + 1) * width, 0.0);
  std::size_t row = 0;
  for (std::size_t bin = 0; bin <= cuts.size(); ++bin) {
    while (row < values.size()) {
      const bool atCut = bin < cuts.size() && values[row] == cuts[bin];
      if (atCut && !rightClosed) break;  // the row opens the next bin
      for (std::size_t j = 0; j < categories; ++j) {
        const double weight = counts[row * categories + j];
        cells[bin * width + j + 1] += weight;
        cells[bin * width] += weight;
      }
      ++row;
      if (atCut) break;
    }
  }
  return cells;
}

MdlpResult MdlpBetween(std::span<const Tuple> tuples, const std::vector<double>& innerBorders,
                       const MdlpOptions& options) {
  MdlpResult result;
  result.modelEntropy = options.missing;

  std::vector<double> borders = {-kLargest};
  borders.insert(borders.end(), innerBorders.begin(), innerBorders.end());
  borders.push_back(kLargest);
  std::vector<double> table;
  result.status = CreateBinTable(tuples, borders, options.categories, options.rightClosed, table);
  if (!result.status.IsOk()) return result;

  // A row is known by the border that belongs to it.
  std::vector<double> values = borders;
  if (options.rightClosed) {
    values.erase(values.begin());
  } else {
    values.pop_back();
  }
  const int rows = static_cast<int>(table.size() / options.categories);
  result.status =
      MdlpCut(values, table, options.categories, 0, rows - 1, options.rightClosed, result.cuts);
  if (result.cuts.empty()) result.status = Warning(kNoCutAccepted);
  if (result.status.IsError()) return result;

  result.cellCounts =
      CellCounts(values, table, result.cuts, options.categories, options.rightClosed);
  if (options.smallBinThreshold > 0.0 && result.cuts.size() > 1) {
    MergeSmallBins(options.smallBinThreshold, options.categories, result.cellCounts, result.cuts);
  }
  result.modelEntropy = ModelEntropy(result.cellCounts, options.categories, options.totalWeight);
  return result;
}

}  // namespace

MdlpResult MdlpOverValues(std::span<const Tuple> tuples, const MdlpOptions& options) {
  std::vector<double> distinct = {tuples.front().value};
  for (const Tuple& tuple : tuples.subspan(1)) {
    if (tuple.value != distinct.back()) distinct.push_back(tuple.value);
  }
  if (options.rightClosed) {
    distinct.pop_back();
  } else {
    distinct.erase(distinct.begin());
  }
  return MdlpBetween(tuples, distinct, options);
}

MdlpResult MdlpOverPercentiles(std::span<const Tuple> tuples,
                               const std::vector<double>& percentileCuts,
                               const MdlpOptions& options) {
  std::vector<double> inner = percentileCuts;
  if (!inner.empty()) {
    if (options.rightClosed && inner.back() == tuples.back().value) {
      inner.pop_back();
    } else if (!options.rightClosed && inner.front() == tuples.front().value) {
      inner.erase(inner.begin());
    }
  }
  return MdlpBetween(tuples, inner, options);
}

// ------------------------------------------------------------- the two drivers

namespace {

// What both families of binning do alike: one pass over the records, a standing
// status, results that only grow.
class Driver {
 public:
  explicit Driver(const Problem& problem)
      : fProblem(problem),
        fVariableCount(static_cast<int>(problem.variables.size())),
        fTarget(FindRole(problem.variables, kRoleTarget)),
        fWeight(FindRole(problem.variables, kRoleWeight)) {}

  virtual ~Driver() = default;

  Outcome Run() {
    for (const Call& call : fProblem.calls) {
      fOutcome.callStatuses.push_back(CreateBins(call));
    }
    fOutcome.finalStatus = fStanding;
    return fOutcome;
  }

 protected:
  virtual Status CreateBins(const Call& call) = 0;

  // The pass runs once; if it failed, so does every later call.
  Status Prepare() {
    if (fProblem.records.empty()) return Error(kNoCase);
    if (!fPrepared) fPrepared = Pass(fProblem).Run();
    return fPrepared->status;
  }

  const Column& ColumnOf(int variable) const { return fPrepared->columns.at(Position(variable)); }

  const Column* WeightColumn() const { return fWeight >= 0 ? &ColumnOf(fWeight) : nullptr; }

  bool IsVariable(int index) const { return index >= 0 && index < fVariableCount; }

  static bool AnyOk(const std::vector<Status>& statuses) {
    return std::any_of(statuses.begin(), statuses.end(),
                       [](const Status& status) { return status.IsOk(); });
  }

  static void Summarise(const Extract& extract, PairResult& result) {
    result.nDistinct = extract.nDistinct;
    result.totalWeight = extract.validWeight;
    result.totalWeightWithMissing = extract.allWeight;
    result.minimum = extract.minimum;
    result.maximum = extract.maximum;
  }

  // The answer to a call whose binning ended with `status`.
  Status Conclude(const Status& status) const {
    return fStanding.IsOk() ? status : Warning(kSomeNotOk);
  }

  void Remember(const Status& status) {
    if (!status.IsOk()) fStanding = status;
  }

  const Problem& fProblem;
  const int fVariableCount;
  const int fTarget;
  const int fWeight;
  std::optional<Prepared> fPrepared;
  Status fStanding;
  Outcome fOutcome;
};

class SupervisedDriver final : public Driver {
 public:
  using Driver::Driver;

 private:
  Status CreateBins(const Call& call) override {
    if (fProblem.numberOfBins < 1) return Error(kBadNumberOfBins);
    std::vector<Status> checks;
    if (call.attributes || call.targets) {
      checks = Check(call);
      if (!AnyOk(checks)) return Error(kNoValidPair);
    }
    const Status prepared = Prepare();
    if (prepared.IsError()) return prepared;
    return Conclude(call.attributes ? BinPairs(call, checks) : BinAll());
  }

  // One status per pair; none when the lists do not go together.
  std::vector<Status> Check(const Call& call) const {
    std::vector<Status> statuses;
    if (!call.attributes) return statuses;
    const std::vector<int>& attributes = *call.attributes;
    if (call.targets && call.targets->size() != attributes.size()) {
      return statuses;
    }
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      statuses.push_back(call.targets ? CheckPair(attributes[i], (*call.targets)[i])
                                      : CheckAttribute(attributes[i]));
    }
    return statuses;
  }

  Status CheckPair(int attribute, int target) const {
    if (!IsVariable(attribute) || !IsVariable(target)) return Error(kBadIndex);
    if (!HasCategories(fProblem.variables[Position(target)])) {
      return Error(kTargetNotCategorical);
    }
    if (target == attribute || target == fWeight || attribute == fWeight) {
      return Error(kIndexHasOtherUse);
    }
    return Status();
  }

  Status CheckAttribute(int attribute) const {
    if (!IsVariable(attribute)) return Error(kBadAttribute);
    if (attribute == fWeight || attribute == fTarget) {
      return Error(kIndexHasOtherUse);
    }
    return Status();
  }

  Status BinPairs(const Call& call, const std::vector<Status>& checks) {
    Status status;
    for (std::size_t i = 0; i < checks.size(); ++i) {
      const int attribute = (*call.attributes)[i];
      const int target = call.targets ? (*call.targets)[i] : fTarget;
      if (checks[i].IsOk()) {
        status = RunPair(attribute, target);
      } else {
        PairResult rejected;
        rejected.status = checks[i];
        rejected.attribute = attribute;
        rejected.target = target;
        Store(rejected);
      }
    }
    return status;
  }

  Status BinAll() {
    if (!IsUsableTarget(fTarget)) return Error(kBadTarget);
    Status status;
    for (int attribute = 0; attribute < fVariableCount; ++attribute) {
      if (attribute == fTarget || attribute == fWeight) continue;
      status = RunPair(attribute, fTarget);
    }
    return status;
  }

  bool IsUsableTarget(int target) const { return target >= 0 && ColumnOf(target).usable; }

  Status RunPair(int attribute, int target) {
    PairResult result;
    result.attribute = attribute;
    result.target = target;
    result.modelEntropy = fProblem.missing;
    if (IsUsableTarget(target)) {
      BinPair(result);
    } else {
      result.status = Error(kBadTarget);
    }
    Store(result);
    Remember(result.status);
    return result.status;
  }

  void BinPair(PairResult& result) {
    fTuples.resize(fPrepared->keptCases);  // once; zeros to begin with
    const Column& target = ColumnOf(result.target);
    const Extract extract =
        ReadAttribute(ColumnOf(result.attribute), &target, WeightColumn(), fProblem, &fTuples);
    Summarise(extract, result);
    const int categories = target.largestCode + 1;
    if (extract.valid == 0) {
      result.status = Warning(kNoValidCase);
    } else {
      BinTuples(extract, categories, result);
    }
    if (extract.nDistinct == 1) {
      result.status = WithDatum(Warning(kOneDistinctValue), 0, result.attribute);
    }
    if (categories == 1) {
      result.status = WithDatum(Warning(kOneTargetClass), 0, result.target);
    }
  }

  void BinTuples(const Extract& extract, int categories, PairResult& result) {
    const std::span<const Tuple> valid(fTuples.data(), extract.valid);
    MdlpOptions options;
    options.categories = Position(categories);
    options.rightClosed = fProblem.rightClosed;
    options.smallBinThreshold = fProblem.smallBinThreshold;
    options.totalWeight = extract.validWeight;
    options.missing = fProblem.missing;

    MdlpResult mdlp;
    if (HasTooManyValues(extract.nDistinct)) {
      // All tuples, also those that earlier attributes left: see the header.
      const Percentiles percentiles =
          PercentileCuts(fTuples, fProblem.numberOfBins, fProblem.rightClosed, false,
                         extract.validWeight, fProblem.missing);
      if (!percentiles.computed) return;
      mdlp = MdlpOverPercentiles(valid, percentiles.cuts, options);
    } else {
      mdlp = MdlpOverValues(valid, options);
    }
    result.status = mdlp.status;
    result.cuts = mdlp.cuts;
    result.cellCounts = mdlp.cellCounts;
    result.modelEntropy = mdlp.modelEntropy;
  }

  // Zero stands for no threshold, and so does a negative one, which is larger
  // than any count once it is taken as unsigned.
  bool HasTooManyValues(unsigned nDistinct) const {
    const auto threshold = static_cast<unsigned>(fProblem.distinctThreshold);
    return threshold != 0 && nDistinct > threshold;
  }

  void Store(const PairResult& result) {
    if (result.attribute < 0 || result.target < 0) return;
    if (result.attribute == result.target) return;
    fOutcome.results.push_back(result);
  }

  std::vector<Tuple> fTuples;
};

class EqualFrequencyDriver final : public Driver {
 public:
  using Driver::Driver;

 private:
  Status CreateBins(const Call& call) override {
    if (fProblem.numberOfBins < 1) return Error(kBadNumberOfBins);
    std::vector<Status> checks;
    if (call.attributes) {
      for (const int attribute : *call.attributes) {
        checks.push_back(Check(attribute));
      }
      if (!AnyOk(checks)) return Error(kBadAttribute);
    }
    const Status prepared = Prepare();
    if (prepared.IsError()) return prepared;
    return Conclude(call.attributes ? BinListed(*call.attributes, checks) : BinAll());
  }

  Status Check(int attribute) const {
    if (!IsVariable(attribute)) return Error(kBadAttribute);
    if (attribute == fWeight) return Error(kIndexHasOtherUse);
    return Status();
  }

  Status BinListed(const std::vector<int>& attributes, const std::vector<Status>& checks) {
    Status status;
    for (std::size_t i = 0; i < attributes.size(); ++i) {
      if (checks[i].IsOk()) {
        status = RunAttribute(attributes[i]);
      } else {
        PairResult rejected;
        rejected.status = checks[i];
        rejected.attribute = attributes[i];
        Store(rejected);
      }
    }
    return status;
  }

  Status BinAll() {
    Status status;
    for (int attribute = 0; attribute < fVariableCount; ++attribute) {
      if (attribute != fWeight) status = RunAttribute(attribute);
    }
    return status;
  }

  Status RunAttribute(int attribute) {
    PairResult result;
    result.attribute = attribute;
    BinAttribute(result);
    Store(result);
    Remember(result.status);
    return result.status;
  }

  void BinAttribute(PairResult& result) {
    // A list with a target has tuples for supervised binning only: its cases
    // are counted, but there is nothing to bin.
    const bool hasTarget = fTarget >= 0;
    if (!hasTarget) fTuples.resize(fPrepared->keptCases);
    const Extract extract =
        ReadAttribute(ColumnOf(result.attribute), hasTarget ? &ColumnOf(fTarget) : nullptr,
                      WeightColumn(), fProblem, hasTarget ? nullptr : &fTuples);
    Summarise(extract, result);
    if (extract.valid == 0) {
      result.status = Warning(kNoValidCase);
      return;
    }
    // All tuples, also those that earlier attributes left: see the header.
    const Percentiles percentiles =
        PercentileCuts(fTuples, fProblem.numberOfBins, fProblem.rightClosed, true,
                       extract.validWeight, fProblem.missing);
    result.cuts = percentiles.cuts;
    result.cellCounts = percentiles.frequencies;
    if (result.cuts.empty()) {
      result.status = WithDatum(Warning(kNoPercentile), 0, result.attribute);
    }
    if (result.nDistinct == 1) {
      result.status = WithDatum(Warning(kOneDistinctValue), 0, result.attribute);
    }
  }

  void Store(const PairResult& result) {
    if (result.attribute >= 0) fOutcome.results.push_back(result);
  }

  std::vector<Tuple> fTuples;  // stays empty when the list has a target
};

}  // namespace

Outcome Run(const Problem& problem) {
  const Status rejection = CheckVariables(problem.variables);
  if (rejection.IsError()) {
    Outcome outcome;
    outcome.finalStatus = rejection;
    return outcome;
  }
  if (problem.supervised) return SupervisedDriver(problem).Run();
  return EqualFrequencyDriver(problem).Run();
}

}  // namespace reference
