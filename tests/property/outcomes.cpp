#include "property/outcomes.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "property/problemtext.h"

namespace property {
namespace {

using reference::Outcome;
using reference::PairResult;
using reference::Status;

bool Same(const Status& a, const Status& b) {
  return a.code == b.code && a.severity == b.severity &&
         std::ranges::equal(a.discrete, b.discrete) &&
         std::ranges::equal(a.scale, b.scale, SameNumber);
}

bool Same(const std::vector<double>& a, const std::vector<double>& b) {
  return std::ranges::equal(a, b, SameNumber);
}

std::string Line(const std::string& what, const std::string& expected, const std::string& actual) {
  return what + ": expected " + expected + ", got " + actual + "\n";
}

std::string Compare(const std::string& what, const Status& expected, const Status& actual) {
  return Same(expected, actual) ? "" : Line(what, TextOf(expected), TextOf(actual));
}

std::string Compare(const std::string& what, double expected, double actual) {
  return SameNumber(expected, actual) ? "" : Line(what, TextOf(expected), TextOf(actual));
}

std::string Compare(const std::string& what, const std::vector<double>& expected,
                    const std::vector<double>& actual) {
  return Same(expected, actual) ? "" : Line(what, TextOf(expected), TextOf(actual));
}

}  // namespace

std::string Difference(const PairResult& expected, const PairResult& actual) {
  return Compare("attribute", expected.attribute, actual.attribute) +
         Compare("target", expected.target, actual.target) +
         Compare("status", expected.status, actual.status) +
         Compare("cuts", expected.cuts, actual.cuts) +
         Compare("cell counts", expected.cellCounts, actual.cellCounts) +
         Compare("distinct values", expected.nDistinct, actual.nDistinct) +
         Compare("total weight", expected.totalWeight, actual.totalWeight) +
         Compare("total weight with missing", expected.totalWeightWithMissing,
                 actual.totalWeightWithMissing) +
         Compare("minimum", expected.minimum, actual.minimum) +
         Compare("maximum", expected.maximum, actual.maximum) +
         Compare("model entropy", expected.modelEntropy, actual.modelEntropy);
}

std::string Difference(const Outcome& expected, const Outcome& actual) {
  std::string text = Compare("calls", static_cast<double>(expected.callStatuses.size()),
                             static_cast<double>(actual.callStatuses.size()));
  for (std::size_t i = 0; i < std::min(expected.callStatuses.size(), actual.callStatuses.size());
       ++i) {
    text += Compare("call " + std::to_string(i), expected.callStatuses[i], actual.callStatuses[i]);
  }
  text += Compare("final status", expected.finalStatus, actual.finalStatus);
  text += Compare("results", static_cast<double>(expected.results.size()),
                  static_cast<double>(actual.results.size()));
  for (std::size_t i = 0; i < std::min(expected.results.size(), actual.results.size()); ++i) {
    const std::string difference = Difference(expected.results[i], actual.results[i]);
    if (!difference.empty()) text += "result " + std::to_string(i) + "\n" + difference;
  }
  return text;
}

}  // namespace property
