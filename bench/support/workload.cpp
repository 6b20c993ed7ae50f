#include "bench/support/workload.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "bench/support/random.h"

namespace bench {

namespace {

constexpr std::uint64_t kSeed = 20240229;
constexpr std::size_t kTooth = 1000;  // values from one sawtooth to the next

// The streams of a data set: its columns', and what else it draws.
enum Stream : std::uint64_t { kTargetStream = 1000001, kWeightStream = 1000002 };

// Normal distributions, chosen with another probability in each class.
class Mixture {
 public:
  Mixture(Random& random, int components, int classes) {
    for (int i = 0; i < components; ++i) {
      fMeans.push_back(3.0 * i + 10.0 * random.Uniform() - 5.0);
      fDeviations.push_back(0.3 + 1.7 * random.Uniform());
    }
    for (int c = 0; c < classes; ++c) fShares.push_back(RandomShares(random, components));
  }

  double Draw(Random& random, int classCode) const {
    const std::vector<double>& shares = fShares[static_cast<std::size_t>(classCode)];
    double rest = random.Uniform();
    std::size_t component = 0;
    while (component + 1 < shares.size() && rest >= shares[component]) {
      rest -= shares[component++];
    }
    return fMeans[component] + fDeviations[component] * random.Normal();
  }

 private:
  // Squares, so that shares are far from equal.
  static std::vector<double> RandomShares(Random& random, int components) {
    std::vector<double> shares;
    double sum = 0.0;
    for (int i = 0; i < components; ++i) {
      const double root = 0.1 + random.Uniform();
      shares.push_back(root * root);
      sum += shares.back();
    }
    for (double& share : shares) share /= sum;
    return shares;
  }

  std::vector<double> fMeans;
  std::vector<double> fDeviations;
  std::vector<std::vector<double>> fShares;  // per class
};

double Hundredths(double value) { return std::round(value * 100.0) / 100.0; }

// Zero, or log-normal when `value` is normal.
double OrZero(Random& random, double shareOfZeros, double value) {
  const double positive = std::exp(0.5 * value);
  return random.Uniform() < shareOfZeros ? 0.0 : positive;
}

double Draw(Source source, Random& random, const Mixture& mixture, int classCode) {
  switch (source) {
    case Source::kMixed: return mixture.Draw(random, classCode);
    case Source::kUniform: return random.Uniform();
    case Source::kNormal: return random.Normal();
    case Source::kExponential: return -std::log(random.Uniform());
    case Source::kMixedInteger:
      return std::clamp(std::floor(40.0 + 5.0 * mixture.Draw(random, classCode)), 0.0, 99.0);
    case Source::kUniformInteger: return random.Below(100);
    case Source::kMixedHundredths: return Hundredths(mixture.Draw(random, classCode));
    case Source::kNormalHundredths: return Hundredths(random.Normal());
    case Source::kMixedOrZero:
    case Source::kMixedHundredthsOrZero: {
      const double shareOfZeros = classCode == 0 ? 0.7 : 0.6;
      const double value = OrZero(random, shareOfZeros, mixture.Draw(random, classCode));
      return source == Source::kMixedOrZero ? value : Hundredths(value);
    }
    case Source::kNormalOrZero: return OrZero(random, 0.65, random.Normal());
  }
  return 0.0;
}

// Class c is drawn in proportion to 1 / (c + 1.5): unequal, as classes are.
std::vector<double> MakeTarget(std::size_t rows, int classes, std::uint64_t seed) {
  Random random(seed, kTargetStream);
  std::vector<double> cumulative;
  cumulative.reserve(static_cast<std::size_t>(classes));
  double sum = 0.0;
  for (int c = 0; c < classes; ++c) cumulative.push_back(sum += 1.0 / (c + 1.5));
  std::vector<double> target(rows);
  for (double& code : target) {
    const double place = random.Uniform() * sum;
    const auto found = std::find_if(cumulative.begin(), cumulative.end() - 1,
                                    [place](double edge) { return place < edge; });
    code = static_cast<double>(found - cumulative.begin());
  }
  return target;
}

std::vector<double> MakeWeights(std::size_t rows, std::uint64_t seed) {
  Random random(seed, kWeightStream);
  std::vector<double> weights(rows);
  for (double& weight : weights) weight = 1 + random.Below(5);
  return weights;
}

// Names give seeds, so that no two workloads share their columns.
std::uint64_t SeedOf(const std::string& name) {
  std::uint64_t seed = kSeed;
  for (const char c : name) seed = seed * 31 + static_cast<unsigned char>(c);
  return seed;
}

std::vector<double> ShapedColumn(const ShapedWorkload& workload, std::uint64_t stream) {
  Random random(kSeed, stream);
  const std::size_t rows = workload.rows;
  std::vector<double> values(rows);
  for (std::size_t i = 0; i < rows; ++i) {
    const auto row = static_cast<double>(i);
    switch (workload.shape) {
      case Shape::kShuffled: values[i] = random.Uniform(); break;
      case Shape::kPresorted:
      case Shape::kReversed: values[i] = row + random.Uniform(); break;
      case Shape::kOrganPipe: values[i] = static_cast<double>(std::min(i, rows - 1 - i)); break;
      case Shape::kAllEqual: values[i] = 1.0; break;
      case Shape::kSawtooth: values[i] = static_cast<double>(i % kTooth); break;
      case Shape::kDistinct: values[i] = random.Below(workload.distinct); break;
    }
  }
  if (workload.shape == Shape::kReversed) std::reverse(values.begin(), values.end());
  return values;
}

// Where a value stands between two others: 0 to 1.
double Place(double value, double low, double high) {
  return high > low ? (value - low) / (high - low) : 0.0;
}

std::vector<double> FollowingTarget(const std::vector<double>& attribute, int classes) {
  Random random(kSeed, kTargetStream);
  const auto [low, high] = std::minmax_element(attribute.begin(), attribute.end());
  std::vector<double> target;
  target.reserve(attribute.size());
  for (const double value : attribute) {
    const int slice = static_cast<int>(Place(value, *low, *high) * classes);
    const int any = random.Below(classes);
    target.push_back(random.Uniform() < 0.5 ? std::min(slice, classes - 1) : any);
  }
  return target;
}

std::vector<double> BlockTarget(std::size_t rows, std::size_t block, int classes) {
  std::vector<double> target(rows);
  for (std::size_t i = 0; i < rows; ++i) {
    target[i] = static_cast<double>(i / block % static_cast<std::size_t>(classes));
  }
  return target;
}

constexpr std::array<std::pair<Shape, const char*>, 7> kShapeNames = {{
    {Shape::kShuffled, "shuffled"},
    {Shape::kPresorted, "presorted"},
    {Shape::kReversed, "reversed"},
    {Shape::kOrganPipe, "organ-pipe"},
    {Shape::kAllEqual, "all-equal"},
    {Shape::kSawtooth, "sawtooth"},
    {Shape::kDistinct, "distinct"},
}};

}  // namespace

const std::vector<Workload>& StandardWorkloads() {
  static const std::vector<Source> distinct = {
      Source::kMixed, Source::kMixed, Source::kMixed,   Source::kMixed,  Source::kMixed,
      Source::kMixed, Source::kMixed, Source::kUniform, Source::kNormal, Source::kExponential};
  static const std::vector<Source> tied = {Source::kMixedInteger,          Source::kMixedInteger,
                                           Source::kMixedInteger,          Source::kUniformInteger,
                                           Source::kMixedHundredths,       Source::kMixedHundredths,
                                           Source::kNormalHundredths,      Source::kMixedOrZero,
                                           Source::kMixedHundredthsOrZero, Source::kNormalOrZero};
  static const std::vector<Workload> workloads = {
      {"W1", 1000000, 2, false, distinct},
      {"W2", 1000000, 5, false, distinct},
      {"W3", 1000000, 2, true, tied},
      {"W4", 5000000, 2, false, {Source::kMixed, Source::kNormal}}};
  return workloads;
}

Columns MakeColumns(const Workload& workload) {
  const std::uint64_t seed = SeedOf(workload.name);
  Columns columns;
  columns.classes = workload.classes;
  columns.target = MakeTarget(workload.rows, workload.classes, seed);
  if (workload.isWeighted) columns.weights = MakeWeights(workload.rows, seed);
  for (std::size_t i = 0; i < workload.attributes.size(); ++i) {
    Random random(seed, i);
    const Mixture mixture(random, 2 + static_cast<int>(i % 5), workload.classes);
    std::vector<double>& values = columns.attributes.emplace_back();
    values.reserve(workload.rows);
    for (const double code : columns.target) {
      values.push_back(Draw(workload.attributes[i], random, mixture, static_cast<int>(code)));
    }
  }
  return columns;
}

const char* NameOf(Shape shape) {
  const auto* const found =
      std::find_if(kShapeNames.begin(), kShapeNames.end(),
                   [shape](const auto& entry) { return entry.first == shape; });
  return found == kShapeNames.end() ? "" : found->second;
}

std::optional<Shape> ShapeOf(const std::string& name) {
  for (const auto& [shape, text] : kShapeNames) {
    if (name == text) return shape;
  }
  return std::nullopt;
}

Columns MakeColumns(const ShapedWorkload& workload) {
  Columns columns;
  columns.classes = workload.classes;
  for (int i = 0; i < workload.attributes; ++i) {
    columns.attributes.push_back(ShapedColumn(workload, static_cast<std::uint64_t>(i)));
  }
  columns.target = workload.block > 0
                       ? BlockTarget(workload.rows, workload.block, workload.classes)
                       : FollowingTarget(columns.attributes.front(), workload.classes);
  if (workload.isWeighted) columns.weights = MakeWeights(workload.rows, kSeed);
  return columns;
}

}  // namespace bench
