#include "report/chart.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "model/recount.h"
#include "output/modelwords.h"
#include "report/chartlayout.h"
#include "report/html.h"

namespace TQTool {
namespace {

// The two panels, from above, in pixels.
struct Panel {
  int top;
  int height;
};

constexpr Panel kWeights = {24, 120};
constexpr Panel kShares = {182, 150};
constexpr int kTitleAbove = 10;  // a panel's title above it
constexpr int kCutsBelow = 18;   // the cut points below the last panel
constexpr int kMargin = 26;      // what they need

// Bars are drawn in a frame of their own, which is stretched to the panel.
constexpr int kBinWidth = 100;
constexpr int kFrameHeight = 1000;
constexpr int kBarGap = 4;             // on both sides of a bar
constexpr std::size_t kMaxGaps = 100;  // more bins than these stand side by side
constexpr std::size_t kMaxOutlines = 200;

std::string Percent(double part) { return fmt::format("{:.4g}%", 100.0 * part); }

int FrameY(double height) {
  return kFrameHeight - static_cast<int>(std::lround(height * kFrameHeight));
}

// Where a height of a panel is on the picture.
double PictureY(const Panel& panel, double height) {
  return panel.top + panel.height * (1 - height);
}

// The path of one rectangle per bin, from `from` up to `to`.
std::string BarPath(const std::vector<double>& from, const std::vector<double>& to) {
  const int gap = to.size() > kMaxGaps ? 0 : kBarGap;
  std::string path;
  for (std::size_t b = 0; b < to.size(); ++b) {
    const int bottom = FrameY(from[b]);
    const int top = FrameY(to[b]);
    if (top >= bottom) continue;
    path += fmt::format("M{} {}h{}V{}h-{}z", static_cast<int>(b) * kBinWidth + gap, bottom,
                        kBinWidth - 2 * gap, top, kBinWidth - 2 * gap);
  }
  return path;
}

// Shapes in a frame that is stretched over a panel.
std::string Frame(const Panel& panel, std::size_t bins, const std::string& shapes) {
  return fmt::format(
      "<svg y=\"{}\" width=\"100%\" height=\"{}\" viewBox=\"0 0 {} {}\" "
      "preserveAspectRatio=\"none\">{}</svg>\n",
      panel.top, panel.height, bins * kBinWidth, kFrameHeight, shapes);
}

std::string PanelTitle(const Panel& panel, const std::string& title) {
  return fmt::format("<text class=\"paneltitle\" y=\"{}\">{}</text>\n", panel.top - kTitleAbove,
                     Escaped(title));
}

// A line across a panel with its value beside it.
std::string GridLine(const Panel& panel, double height, const std::string& text) {
  const double y = PictureY(panel, height);
  return fmt::format(
      "<line x2=\"100%\" y1=\"{0:.4g}\" y2=\"{0:.4g}\"/><text x=\"-6\" y=\"{1:.4g}\">{2}</text>\n",
      y, y + 4, text);
}

std::string Axis(const Panel& panel, const std::vector<ChartLayout::Label>& labels) {
  std::string text = "<g class=\"axis\">";
  for (const ChartLayout::Label& label : labels)
    text += GridLine(panel, label.position, label.text);
  return text + "</g>\n";
}

std::string DrawWeights(const ChartLayout& layout, const ChartWords& words) {
  const std::size_t bins = layout.heights.size();
  const std::string bars = fmt::format("<path class=\"bar\" d=\"{}\"/>",
                                       BarPath(std::vector<double>(bins, 0.0), layout.heights));
  const std::string title = words.unit == "rows" ? "Rows per bin" : "Weight per bin";
  return PanelTitle(kWeights, title) + Axis(kWeights, layout.weightAxis) +
         Frame(kWeights, bins, bars);
}

// The class that colours a category; those of a pair are coloured as event and not.
std::string ColourOf(std::size_t category, const ShownBins& shown) {
  if (shown.categories.size() == 2) return category == 1 ? "event" : "noevent";
  const bool isRest = shown.summedUp > 0 && category + 1 == shown.categories.size();
  return isRest ? "rest" : fmt::format("k{}", category);
}

// A dashed line where the edge would be if every bin were like all together.
std::string EventLine(const ShownBins& shown) {
  const double events = shown.TotalOf(1);
  const double others = shown.TotalOf(0);
  if (events == TQMV::gMissingValue || others == TQMV::gMissingValue) return "";
  if (!(events + others > 0.0)) return "";
  const double y = PictureY(kShares, events / (events + others));
  return fmt::format("<line class=\"overall\" x2=\"100%\" y1=\"{0:.4g}\" y2=\"{0:.4g}\"/>\n", y);
}

std::string DrawShares(const ChartLayout& layout, const ShownBins& shown, const ChartWords& words) {
  const std::size_t bins = layout.heights.size();
  std::string paths;
  std::vector<double> below(bins, 0.0);
  for (std::size_t c = 0; c < layout.edges.size(); ++c) {
    paths += fmt::format("<path class=\"{}\" d=\"{}\"/>", ColourOf(layout.order[c], shown),
                         BarPath(below, layout.edges[c]));
    below = layout.edges[c];
  }
  const bool isPair = shown.categories.size() == 2;
  const std::string title =
      isPair ? fmt::format("Event rate: share of {} = {}", words.target, shown.categories[1])
             : "Share of each category of " + words.target;
  return PanelTitle(kShares, title) + Axis(kShares, {{0.0, "0%"}, {0.5, "50%"}, {1.0, "100%"}}) +
         Frame(kShares, bins, paths) + (isPair ? EventLine(shown) : "");
}

std::string DrawCuts(const std::vector<ChartLayout::Label>& labels, int y) {
  std::string text = "<g class=\"cuts\">";
  for (const ChartLayout::Label& label : labels) {
    const char* const kind = label.isOnlyForWide ? " class=\"wide\"" : "";
    const std::string x = Percent(label.position);
    text += fmt::format(
        "<line{0} x1=\"{1}\" x2=\"{1}\" y1=\"{2}\" y2=\"{3}\"/>"
        "<text{0} x=\"{1}\" y=\"{4}\">{5}</text>\n",
        kind, x, y, y + 5, y + kCutsBelow, label.text);
  }
  return text + "</g>\n";
}

// What a pointer meets over a bin: its numbers.
std::string DrawHits(const ShownBins& shown, const ChartWords& words, const Panel& whole) {
  std::string rectangles;
  for (std::size_t b = 0; b < shown.attribute.bins.size(); ++b) {
    rectangles += fmt::format(
        "<rect class=\"hit\" x=\"{}\" width=\"{}\" height=\"{}\"><title>{}</title></rect>",
        b * kBinWidth, kBinWidth, kFrameHeight, Escaped(DescribeBin(shown, b, words.unit)));
  }
  return Frame(whole, shown.attribute.bins.size(), rectangles);
}

}  // namespace

std::string DrawChart(const ShownBins& shown, const ChartWords& words) {
  const ChartLayout layout = LayOut(shown);
  const bool hasTarget = !shown.categories.empty();
  const Panel& last = hasTarget ? kShares : kWeights;
  const int bottom = last.top + last.height;
  const bool isDense = shown.attribute.bins.size() > kMaxOutlines;
  std::string text = fmt::format(
      "<svg class=\"chart{}\" role=\"img\" aria-labelledby=\"{}t {}d\" width=\"100%\" "
      "height=\"{}\">\n<title id=\"{}t\">{}</title><desc id=\"{}d\">{}</desc>\n",
      isDense ? " dense" : "", words.id, words.id, bottom + kMargin, words.id, Escaped(words.title),
      words.id, Escaped(words.description));
  text += DrawWeights(layout, words);
  if (hasTarget) text += DrawShares(layout, shown, words);
  text += DrawCuts(layout.cutAxis, bottom);
  text += DrawHits(shown, words, {kWeights.top, bottom - kWeights.top});
  return text + "</svg>\n";
}

std::string DrawLegend(const ShownBins& shown) {
  if (shown.categories.empty()) return "";
  Count all = {0.0, 0.0};
  for (std::size_t c = 0; c < shown.categories.size(); ++c) {
    all = Sum(all, {shown.TotalOf(c), 0.0});
  }
  std::string text = "<ul class=\"legend\" aria-label=\"Colours, from below\">";
  for (const std::size_t c : LayOut(shown).order) {
    text += fmt::format(
        "<li><svg class=\"key\" aria-hidden=\"true\"><rect class=\"{}\"/></svg> {} "
        "<span class=\"soft\">{}</span></li>",
        ColourOf(c, shown), Isolated(shown.categories[c]), ShareText(shown.TotalOf(c), all.weight));
  }
  return text + "</ul>\n";
}

std::string DescribeBin(const ShownBins& shown, std::size_t bin, const std::string& unit) {
  const Bin& counted = shown.attribute.bins.at(bin);
  std::string text = fmt::format("{}: {} {}, {}", Printable(LabelOf(shown.attribute, bin)),
                                 Grouped(WeightText(counted.count.weight)), unit,
                                 ShareText(counted.count.weight, shown.attribute.total.weight));
  for (std::size_t c = 0; c < shown.categories.size(); ++c) {
    text += fmt::format("{}{} {}", c == 0 ? "; " : ", ", shown.categories[c],
                        ShareText(counted.categories.at(c).weight, counted.count.weight));
  }
  return text;
}

}  // namespace TQTool
