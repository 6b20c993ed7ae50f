#include "report/chartlayout.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <fmt/format.h>

#include "model/recount.h"
#include "report/html.h"

namespace TQTool {
namespace {

// Widths in pixels: of the chart on a telephone and on paper or a screen, and about that
// of a character of its labels and of the space between two of them.
constexpr double kNarrowWidth = 290.0;
constexpr double kWideWidth = 640.0;
constexpr double kCharacterWidth = 7.0;
constexpr double kLabelGap = 8.0;

constexpr double kMaxSteps = 4.0;  // of the axis of weights

// The least of 1, 2 and 5 times a power of ten by which an axis to `highest` has few steps.
double StepOf(double highest) {
  const double least = highest / kMaxSteps;
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least) return factor * power;
  }
  return 10.0 * power;
}

double WeightOf(const Count& count) {
  return count.weight == TQMV::gMissingValue ? 0.0 : count.weight;
}

void LayOutWeights(const std::vector<Bin>& bins, ChartLayout& layout) {
  double highest = 0.0;
  for (const Bin& bin : bins) highest = std::max(highest, WeightOf(bin.count));
  layout.heights.assign(bins.size(), 0.0);
  if (!(highest > 0.0)) return;
  const double step = StepOf(highest);
  const int steps = static_cast<int>(std::ceil(highest / step));
  for (int s = 0; s <= steps; ++s) {
    const double position = static_cast<double>(s) / steps;
    layout.weightAxis.push_back({position, Grouped(fmt::format("{:.6g}", s * step))});
  }
  for (std::size_t b = 0; b < bins.size(); ++b) {
    layout.heights[b] = WeightOf(bins[b].count) / (step * steps);
  }
}

// The sum of a bin's categories; 0 when one is unknown.
double KnownTotal(const Bin& bin) {
  Count total = {0.0, 0.0};
  for (const Count& count : bin.categories) total = Sum(total, count);
  return WeightOf(total);
}

void LayOutCategories(const ShownBins& shown, ChartLayout& layout) {
  const std::size_t categories = shown.categories.size();
  layout.order.resize(categories);
  std::iota(layout.order.begin(), layout.order.end(), 0U);
  if (categories == 2) layout.order = {1, 0};
  layout.edges.assign(categories, std::vector<double>(shown.attribute.bins.size(), 0.0));
  for (std::size_t b = 0; b < shown.attribute.bins.size(); ++b) {
    const Bin& bin = shown.attribute.bins[b];
    const double total = KnownTotal(bin);
    if (!(total > 0.0)) continue;
    double below = 0.0;
    for (std::size_t c = 0; c < categories; ++c) {
      below += bin.categories.at(layout.order[c]).weight;
      layout.edges[c][b] = below / total;
    }
  }
}

// The least power of two by which labels of this width may follow each other.
std::size_t StrideOf(double labelWidth, double chartWidth, std::size_t bins) {
  std::size_t stride = 1;
  while (static_cast<double>(stride) * chartWidth < labelWidth * static_cast<double>(bins)) {
    stride *= 2;
  }
  return stride;
}

void LayOutCuts(const std::vector<double>& cuts, ChartLayout& layout) {
  std::vector<std::string> texts;
  std::size_t longest = 0;
  for (const double cut : cuts) {
    texts.push_back(fmt::format("{:.6g}", cut));
    longest = std::max(longest, texts.back().size());
  }
  const std::size_t bins = cuts.size() + 1;
  const double width = static_cast<double>(longest) * kCharacterWidth + kLabelGap;
  const std::size_t narrow = StrideOf(width, kNarrowWidth, bins);
  const std::size_t wide = StrideOf(width, kWideWidth, bins);
  for (std::size_t border = wide; border < bins; border += wide) {
    layout.cutAxis.push_back({static_cast<double>(border) / static_cast<double>(bins),
                              texts[border - 1], border % narrow != 0});
  }
}

}  // namespace

ChartLayout LayOut(const ShownBins& shown) {
  ChartLayout layout;
  LayOutWeights(shown.attribute.bins, layout);
  LayOutCategories(shown, layout);
  LayOutCuts(shown.attribute.cuts, layout);
  return layout;
}

}  // namespace TQTool
