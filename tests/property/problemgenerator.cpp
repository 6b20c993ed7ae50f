#include "property/problemgenerator.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

#include "property/problemrecipe.h"
#include "property/random.h"

namespace property {
namespace {

using reference::Call;
using reference::Problem;
using reference::Variable;

constexpr double kMissing = std::numeric_limits<double>::lowest();
constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kSubnormal = std::numeric_limits<double>::denorm_min();
constexpr int kUnchanged = 2;  // a rounding option that leaves weights as they are

using Column = std::vector<double>;

std::size_t Size(int n) { return static_cast<std::size_t>(n); }

class Maker {
 public:
  Maker(Kind kind, Random random) : fRecipe(RecipeOf(kind)), fRandom(random) {}

  Problem Make() {
    fProblem.supervised = fRecipe.supervised;
    fProblem.ties = reference::Ties::kByWeight;
    fProblem.rightClosed = fRandom.Chance(500);
    ChooseBins();
    ChooseRows();
    MakeAttributes();
    MakeCategorical();
    MakeWeight();
    ArrangeVariables();
    ChooseThresholds();
    MakeCalls();
    return std::move(fProblem);
  }

 private:
  struct Field {
    Variable variable;
    Column column;
  };

  void ChooseBins() {
    const int kind = fRandom.Between(0, 99);
    if (fRandom.Chance(fRecipe.unset)) {
      fProblem.numberOfBins = -1;
    } else if (kind < 75) {
      fProblem.numberOfBins = fRandom.Between(2, 6);
    } else if (kind < 95) {
      fProblem.numberOfBins = fRandom.Between(7, 25);
    } else {
      fProblem.numberOfBins = fRandom.Pick<int>({50, 97, 100, 300, 1000});
    }
  }

  // Rows come in whole groups where values are to stand for equal shares.
  void ChooseRows() {
    fGroupSize = fRandom.Between(1, 4);
    int rows = fRandom.Between(fRecipe.minRows, fRecipe.maxRows);
    if (fRandom.Chance(500) && fProblem.numberOfBins > 0 && fProblem.numberOfBins <= 25) {
      const int share = fProblem.numberOfBins * fGroupSize;
      rows = (rows / share + 1) * share;
    }
    fRows = fRandom.Chance(fRecipe.empty) ? 0 : rows;
  }

  // ----------------------------------------------------------------- attributes

  void MakeAttributes() {
    const int count = fRandom.Between(1, fRecipe.maxAttributes);
    for (int a = 0; a < count; ++a) {
      Field field;
      field.column = MakeValues(fRandom.Pick(fRecipe.values));
      const int missing = fRandom.Pick(fRecipe.missing);
      for (double& value : field.column) {
        if (fRandom.Chance(missing)) value = kMissing;
      }
      AddUserMissing(field);
      fFields.push_back(std::move(field));
    }
  }

  Column MakeValues(Values style) {
    Column column(Size(fRows), 0.0);
    const int offset = fRandom.Pick<int>({0, 0, 0, -7, 100, -1000000});
    switch (style) {
      case Values::kFew: {
        const int last = fRandom.Between(0, 3);
        for (double& value : column) value = offset + fRandom.Between(0, last);
        return column;
      }
      case Values::kSome: {
        const int last = fRandom.Between(4, 20);
        for (double& value : column) value = offset + fRandom.Between(0, last);
        return column;
      }
      case Values::kQuarters:
        for (double& value : column) value = fRandom.Between(-20, 20) / 4.0;
        return column;
      case Values::kDecimals:
        for (double& value : column) value = fRandom.Between(-15, 15) / 10.0;
        return column;
      case Values::kDistinct:
      case Values::kGroups:
      case Values::kHeavy: return MakeGroups(style, offset);
      case Values::kPowers:
        for (double& value : column) value = std::ldexp(1.0, fRandom.Between(-8, 8));
        return column;
      case Values::kNeighbours: {
        const double start = fRandom.Pick<double>({1.0, 0.0, -1.0, 4503599627370496.0, 0x1p53});
        std::vector<double> neighbours = {start};
        for (int i = 0; i < 6; ++i) {
          neighbours.push_back(std::nextafter(neighbours.back(), kInfinity));
        }
        for (double& value : column) value = fRandom.Pick(neighbours);
        return column;
      }
      case Values::kOdd: {
        std::vector<double> pool;
        const int size = fRandom.Between(2, 9);
        for (int i = 0; i < size; ++i) pool.push_back(OddValue());
        for (double& value : column) value = fRandom.Pick(pool);
        return column;
      }
      case Values::kConstant: {
        const double value = fRandom.Pick<double>({0.0, 1.0, -2.5, 1e300});
        std::fill(column.begin(), column.end(), value);
        return column;
      }
      case Values::kAllMissing: std::fill(column.begin(), column.end(), kMissing); return column;
    }
    return column;
  }

  // Values in groups of equal ones, mostly shuffled.
  Column MakeGroups(Values style, int offset) {
    Column column(Size(fRows), 0.0);
    if (style == Values::kHeavy) {
      const int heavy = fRandom.Between(0, std::max(0, fRows - 1));
      const int last = std::min(fRows - 1, heavy + fRows / 2);
      for (int i = 0; i < fRows; ++i) {
        column[Size(i)] = i >= heavy && i <= last ? heavy / fGroupSize : i / fGroupSize;
      }
    } else {
      const int size = style == Values::kDistinct ? 1 : fGroupSize;
      const double step = fRandom.Pick<double>({1.0, 1.0, 0.25, 0.1, 3.0});
      for (int i = 0; i < fRows; ++i) column[Size(i)] = offset + (i / size) * step;
    }
    if (fRandom.Chance(800)) fRandom.Shuffle(column);
    return column;
  }

  double OddValue() {
    static const std::vector<double> values = {0.0,
                                               -0.0,
                                               0.0,
                                               -0.0,
                                               1.0,
                                               -1.0,
                                               2.0,
                                               kNaN,
                                               kNaN,
                                               kInfinity,
                                               -kInfinity,
                                               kLargest,
                                               kSubnormal,
                                               -kSubnormal,
                                               1e-310,
                                               std::numeric_limits<double>::min(),
                                               0x1p53,
                                               0x1p53 + 2,
                                               0x1p53 - 1,
                                               1e300,
                                               -1e300,
                                               0.1,
                                               0.2,
                                               0.3,
                                               1e308,
                                               -1e308,
                                               0x1.0000000000001p0,
                                               0x1.fffffffffffffp-1,
                                               -0x1.ffffffffffffep1023,
                                               -1.5,
                                               2147483648.0,
                                               -2147483649.0,
                                               1e19,
                                               kMissing};
    return fRandom.Pick(values);
  }

  // Declares values that do occur, now and then.
  void AddUserMissing(Field& field) {
    if (!fRandom.Chance(fRecipe.userMissing) || field.column.empty()) return;
    const int count = fRandom.Between(0, 2);
    for (int i = 0; i < count; ++i) {
      field.variable.missingValues.push_back(fRandom.Pick(field.column));
    }
    if (fRandom.Chance(500)) {
      double low = fRandom.Pick(field.column);
      double high = fRandom.Chance(700) ? low : fRandom.Pick(field.column);
      if (low > high && fRandom.Chance(900)) std::swap(low, high);  // else: an empty one
      if (fRandom.Chance(100)) low = kMissing;                      // unbounded below
      field.variable.missingInterval = {low, high};
    }
  }

  // --------------------------------------------------------- categorical variables

  void MakeCategorical() {
    if (fRandom.Chance(fRecipe.target)) {
      fFields.push_back(MakeCategoricalField(reference::kRoleTarget));
    }
    const int others = fRandom.Chance(500) ? 0 : fRandom.Between(0, fRecipe.maxCategorical);
    for (int i = 0; i < others; ++i) {
      fFields.push_back(MakeCategoricalField(reference::kRoleAttribute));
    }
  }

  Field MakeCategoricalField(int role) {
    Field field;
    field.variable.kind = Variable::Kind::kCategorical;
    field.variable.role = role;
    int categories = fRandom.Chance(60) ? 1 : fRandom.Between(2, fRecipe.maxCategories);
    if (fRandom.Chance(8)) categories = fRandom.Pick<int>({30, 200, 256});
    field.column = MakeCodes(categories);
    field.variable.categories = std::max(2, categories);
    if (fRandom.Chance(fRecipe.declaration)) {
      field.variable.categories = categories + fRandom.Pick<int>({-2, -1, -1, 0, 1, 3});
    }
    field.variable.level = fRandom.Pick<int>({2, 2, 2, 2, 2, 2, 2, 3, 3, 3});
    if (fRandom.Chance(fRecipe.declaration / 4)) {
      field.variable.level = fRandom.Pick<int>({0, 1, 4});
    }
    if (fRandom.Chance(20)) field.variable.missingValues.push_back(1.0);  // has no effect
    return field;
  }

  Column MakeCodes(int categories) {
    const Classes style = fRandom.Pick(fRecipe.classes);
    const Column& driver = fFields[fRandom.Next() % fFields.size()].column;
    const int noise = fRandom.Pick<int>({0, 0, 0, 50, 200});
    const int missing = fRandom.Pick<int>({0, 0, 0, 50, 300});
    const int constant = fRandom.Chance(600) ? 0 : fRandom.Between(0, categories - 1);
    const std::vector<int> ranks = RanksOf(driver);
    const int distinct = ranks.empty() ? 0 : *std::max_element(ranks.begin(), ranks.end()) + 1;
    const int third = std::max(1, distinct / 3);
    const int width = fRandom.Chance(400) ? third : fRandom.Between(1, third);
    const int pivot = fRandom.Between(0, distinct);

    Column column(Size(fRows), 0.0);
    for (int i = 0; i < fRows; ++i) {
      const int rank = ranks[Size(i)];
      int code = 0;
      switch (style) {
        case Classes::kRandom: code = fRandom.Between(0, categories - 1); break;
        case Classes::kThreshold: code = rank < pivot ? 0 : categories - 1; break;
        case Classes::kBlocks: code = rank / width % categories; break;
        case Classes::kCyclic: code = i % categories; break;
        case Classes::kMirror:
          code = std::min(rank, distinct - 1 - rank) / width % categories;
          break;
        case Classes::kConstant: code = constant; break;
      }
      if (fRandom.Chance(noise)) code = fRandom.Between(0, categories - 1);
      column[Size(i)] = code;
      if (fRandom.Chance(missing)) column[Size(i)] = fRandom.Chance(500) ? kMissing : -1.0;
      if (fRandom.Chance(fRecipe.oddCode)) column[Size(i)] = OddCode();
    }
    return column;
  }

  // The place of each value among the distinct ones; NaN counts as the first.
  static std::vector<int> RanksOf(const Column& column) {
    Column distinct = column;
    for (double& value : distinct) {
      if (std::isnan(value)) value = kMissing;
    }
    std::sort(distinct.begin(), distinct.end());
    distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
    std::vector<int> ranks;
    for (const double value : column) {
      const double key = std::isnan(value) ? kMissing : value;
      const auto place = std::lower_bound(distinct.begin(), distinct.end(), key);
      ranks.push_back(static_cast<int>(place - distinct.begin()));
    }
    return ranks;
  }

  // Mostly codes that leave a column usable, so that not every column is lost.
  double OddCode() {
    if (fRandom.Chance(700)) {
      return fRandom.Pick<double>({-1.0, -1.5, -1.999, -0.5, -0.0, 0.9, 1.5, 1.0, 2.999, -1.25});
    }
    return fRandom.Pick<double>({254.0, 255.0, 255.9, 256.0, 300.0, -2.0, -3.7, 1e6, 2147483647.0,
                                 2147483648.0, 4294967295.0, -2147483648.0, -2147483649.0, 1e300,
                                 kNaN, kInfinity, -kInfinity});
  }

  // --------------------------------------------------------------------- weights

  void MakeWeight() {
    const Weights style = fRandom.Pick(fRecipe.weights);
    if (style == Weights::kNone) return;
    Field field;
    field.variable.kind = Variable::Kind::kWeight;
    field.variable.role = reference::kRoleWeight;
    field.variable.rounding = fRandom.Pick<int>({0, 1, 1});
    if (style != Weights::kWhole && style != Weights::kRough) {
      field.variable.rounding = fRandom.Pick<int>({kUnchanged, kUnchanged, 7, -1});
    }
    const int exponent = fRandom.Pick<int>({-1074, -1000, -300, 50, 60, 62, 300, 1000});
    for (int i = 0; i < fRows; ++i) field.column.push_back(MakeOneWeight(style, exponent));
    AddUserMissing(field);
    fFields.push_back(std::move(field));
  }

  double MakeOneWeight(Weights style, int exponent) {
    switch (style) {
      case Weights::kNone: break;
      case Weights::kWhole: return fRandom.Between(1, 5);
      case Weights::kRough:
        if (fRandom.Chance(20)) return kMissing;
        if (fRandom.Chance(20)) return fRandom.Pick<double>({0.0, -0.0, -1e9, 1e9, 1e15});
        return fRandom.Chance(500) ? fRandom.Between(-2, 6) : fRandom.Between(-4, 14) / 4.0;
      case Weights::kEighths:
        if (fRandom.Chance(30)) return fRandom.Pick<double>({0.0, -0.125, -3.0, kMissing});
        return fRandom.Between(1, 40) / 8.0;
      case Weights::kScaled: return std::ldexp(fRandom.Between(0, 7), exponent);
      case Weights::kFarApart:
        return fRandom.Pick<double>({1.0, 1.0, 2.0, 0x1p300, 0x1p300, 0x1p-400, 0x1p900});
      case Weights::kOverflowing: return fRandom.Chance(800) ? 1.0 : 0x1p1023;
      case Weights::kOdd:
        return fRandom.Chance(850)
                   ? fRandom.Between(1, 3)
                   : fRandom.Pick<double>({kNaN, kInfinity, -kInfinity, kSubnormal, kLargest});
      case Weights::kArbitrary:
        if (fRandom.Chance(300)) return fRandom.Between(1, 99) / 10.0;
        if (fRandom.Chance(50)) return fRandom.Pick<double>({0x1p53, 0x1p53 + 2, 1e16, 1e-16});
        return AnyDouble();
    }
    return 1.0;
  }

  // All bits of the mantissa are random.  One draw after the other: the order in which
  // arguments are evaluated is the compiler's choice.
  double AnyDouble() {
    const auto mantissa = static_cast<double>(fRandom.Next() >> 11);
    const int exponent = fRandom.Between(-56, -48);
    return std::ldexp(mantissa, exponent);
  }

  // ----------------------------------------------------------------- the problem

  void ArrangeVariables() {
    if (fRandom.Chance(600)) fRandom.Shuffle(fFields);
    fProblem.records.assign(Size(fRows), {});
    for (const Field& field : fFields) {
      fProblem.variables.push_back(field.variable);
      for (std::size_t i = 0; i < fProblem.records.size(); ++i) {
        fProblem.records[i].push_back(field.column[i]);
      }
    }
  }

  void ChooseThresholds() {
    if (!fRecipe.supervised) return;
    if (fRandom.Chance(fRecipe.preBinned)) {
      const std::vector<int> ranks = RanksOf(fFields.front().column);
      const int distinct = ranks.empty() ? 1 : *std::max_element(ranks.begin(), ranks.end()) + 1;
      fProblem.distinctThreshold =
          std::max(0, fRandom.Pick<int>({0, 1, 2, 3, 4, 5, 8, 10, distinct - 2, distinct - 1,
                                         distinct, distinct + 1}));
    } else if (fRandom.Chance(200)) {
      fProblem.distinctThreshold = 1000000;
    }
    if (fRandom.Chance(fRecipe.merged)) {
      fProblem.smallBinThreshold =
          fRandom.Pick<double>({1.0, 1.0, 0.5, 0.25, 0.9, 0.75, 0.1, 1e-9, 1.0 / 3.0});
    }
  }

  // ----------------------------------------------------------------------- calls

  void MakeCalls() {
    const int count = fRandom.Between(1, fRecipe.maxCalls);
    for (int i = 0; i < count; ++i) fProblem.calls.push_back(MakeCall());
  }

  Call MakeCall() {
    Call call;
    if (!fRandom.Chance(fRecipe.lists)) return call;
    const int length = fRandom.Chance(30) ? 0 : fRandom.Between(1, 4);
    std::vector<int> attributes;
    for (int i = 0; i < length; ++i) attributes.push_back(MakeIndex(/*wantsCategorical=*/false));
    if (fRecipe.supervised && fRandom.Chance(700)) {
      std::vector<int> targets;
      for (int i = 0; i < length; ++i) targets.push_back(MakeIndex(/*wantsCategorical=*/true));
      if (fRandom.Chance(fRecipe.badEntry / 5)) targets.push_back(0);
      call.targets = targets;
      if (fRandom.Chance(fRecipe.badEntry / 5)) return call;  // targets without attributes
    }
    call.attributes = attributes;
    return call;
  }

  int MakeIndex(bool wantsCategorical) {
    const int size = static_cast<int>(fProblem.variables.size());
    if (fRandom.Chance(fRecipe.badEntry)) {
      return fRandom.Pick<int>({-1, -5, size, size + 3, INT_MAX, INT_MIN, 0, 0, 1, 1});
    }
    for (int attempt = 0; attempt < 4; ++attempt) {
      const int index = fRandom.Between(0, size - 1);
      const bool isCategorical =
          fProblem.variables[Size(index)].kind == Variable::Kind::kCategorical;
      if (isCategorical == wantsCategorical) return index;
    }
    return fRandom.Between(0, size - 1);
  }

  const Recipe fRecipe;
  Random fRandom;
  Problem fProblem;
  std::vector<Field> fFields;
  int fRows = 0;
  int fGroupSize = 1;
};

struct NamedKind {
  Kind kind;
  const char* name;
  int share;  // of all problems, out of the sum of the shares
};

constexpr std::array<NamedKind, static_cast<std::size_t>(Kind::kLast) + 1> kKinds = {{
    {Kind::kTies, "ties", 110},
    {Kind::kEqualEntropies, "equal entropies", 60},
    {Kind::kPreBinned, "pre-binned", 70},
    {Kind::kMerged, "merged", 60},
    {Kind::kSeveralTargets, "several targets", 70},
    {Kind::kIndexLists, "index lists", 60},
    {Kind::kWeights, "weights", 60},
    {Kind::kFractionalWeights, "fractional weights", 60},
    {Kind::kArbitraryWeights, "arbitrary weights", 60},
    {Kind::kHugeWeights, "huge weights", 50},
    {Kind::kOddValues, "odd values", 70},
    {Kind::kOddCodes, "odd codes", 60},
    {Kind::kLists, "variable lists", 40},
    {Kind::kManyRecords, "many records", 1},
    {Kind::kEqualFrequency, "equal frequency", 60},
    {Kind::kExactTargets, "exact targets", 60},
    {Kind::kStaleTails, "stale tails", 60},
    {Kind::kEqualFrequencyWeights, "equal-frequency weights", 60},
    {Kind::kEqualFrequencyLists, "equal-frequency lists", 60},
}};

Kind PickKind(Random& random) {
  int sum = 0;
  for (const NamedKind& named : kKinds) sum += named.share;
  int left = random.Between(0, sum - 1);
  for (const NamedKind& named : kKinds) {
    left -= named.share;
    if (left < 0) return named.kind;
  }
  return kKinds.back().kind;
}

}  // namespace

const char* NameOf(Kind kind) {
  for (const NamedKind& named : kKinds) {
    if (named.kind == kind) return named.name;
  }
  return "";
}

std::vector<Kind> AllKinds() {
  std::vector<Kind> kinds;
  for (const NamedKind& named : kKinds) kinds.push_back(named.kind);
  return kinds;
}

GeneratedProblem Generate(std::uint64_t seed) {
  Random random(seed);
  const Kind kind = PickKind(random);
  return {kind, Maker(kind, random).Make()};
}

}  // namespace property
