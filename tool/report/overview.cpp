#include "report/overview.h"

#include <algorithm>

#include <fmt/format.h>

#include "base/statuswords.h"
#include "model/recount.h"
#include "output/modelwords.h"
#include "report/html.h"

namespace TQTool {
namespace {

std::string Cell(const std::string& text) { return "<td>" + text + "</td>"; }

// A cell that a narrow page leaves out.
std::string WideCell(const std::string& text) { return "<td class=\"wide\">" + text + "</td>"; }

// By what the entries are ranked: a number with a bar as long as it is part of `whole`.
std::string BarCell(double value, double whole, const std::string& text) {
  const double part = whole > 0.0 ? std::clamp(value / whole, 0.0, 1.0) : 0.0;
  return fmt::format(
      "<td class=\"ranking\"><span>{}</span> <svg class=\"rank\" aria-hidden=\"true\"><rect "
      "class=\"bar\" "
      "width=\"{:.1f}%\" height=\"100%\"/></svg></td>",
      text, 100.0 * part);
}

bool HasEvents(std::span<const ReportEntry> entries) {
  return entries.front().target != nullptr && entries.front().target->categories.size() == 2;
}

// The greatest gain, which gets the longest bar.
double HighestGain(std::span<const ReportEntry> entries) {
  double highest = 0.0;
  for (const ReportEntry& entry : entries) {
    if (entry.measures.has_value()) highest = std::max(highest, entry.measures->informationGain);
  }
  return highest;
}

// The cells of what the entries are ranked by.
std::string RankingCells(const ReportEntry& entry, double highestGain, bool hasEvents) {
  if (entry.target == nullptr) {
    const double share = FullestShareOf(*entry.attribute);
    if (share == TQMV::gMissingValue) return Cell("");
    return BarCell(share, 1.0, ShareText(share, 1.0));
  }
  const bool isKnown = entry.measures.has_value() && !entry.attribute->cuts.empty();
  if (!isKnown) return Cell("") + (hasEvents ? Cell("") : "");
  const double gain = entry.measures->informationGain;
  std::string cells = BarCell(gain, highestGain, Fixed(gain, 4));
  if (hasEvents) cells += Cell(Fixed(entry.measures->informationValue, 4));
  return cells;
}

// "binned", or what went otherwise.
std::string StatusCell(const BinnedAttribute& attribute) {
  const char* const severity = SeverityOf(attribute.status);
  const char* const words =
      attribute.isEdited ? "edited" : WordsOf(attribute.status.GetErrorCode()).words;
  return fmt::format("<td class=\"state {}\">{}</td>", severity, Escaped(words));
}

std::string Row(const ReportEntry& entry, double highestGain, bool hasEvents) {
  const BinnedAttribute& attribute = *entry.attribute;
  return fmt::format("<tr><th scope=\"row\"><a href=\"#{}\">{}</a></th>", entry.id,
                     Isolated(attribute.name)) +
         RankingCells(entry, highestGain, hasEvents) +
         WideCell(Grouped(std::to_string(attribute.bins.size()))) +
         WideCell(Grouped(std::to_string(attribute.numDistinct))) +
         WideCell(ShareText(MissingOf(attribute).weight, attribute.total.weight)) +
         StatusCell(attribute) + "</tr>\n";
}

std::string Caption(const ReportEntry& first) {
  if (first.target == nullptr) return "Attributes, the least even bins first";
  return "Attributes by what their bins tell about " + Isolated(first.target->name);
}

}  // namespace

std::string WriteOverview(std::span<const ReportEntry> entries) {
  const ReportEntry& first = entries.front();
  const bool hasEvents = HasEvents(entries);
  const std::string id = first.id + "o";
  std::string text = fmt::format(
      "<div class=\"scroll\" role=\"group\" aria-labelledby=\"{}\" tabindex=\"0\">\n"
      "<table class=\"overview\"><caption id=\"{}\">{}</caption>\n<thead><tr>"
      "<th scope=\"col\">Attribute</th><th scope=\"col\">{}</th>{}<th scope=\"col\" "
      "class=\"wide\">Bins</th>"
      "<th scope=\"col\" class=\"wide\">Distinct</th>"
      "<th scope=\"col\" class=\"wide\">Missing</th>"
      "<th scope=\"col\">Status</th></tr></thead>\n<tbody>\n",
      id, id, Caption(first), first.target == nullptr ? "Fullest bin" : "Information gain, bits",
      hasEvents ? "<th scope=\"col\"><abbr title=\"information value\">IV</abbr></th>" : "");
  const double highestGain = HighestGain(entries);
  for (const ReportEntry& entry : entries) text += Row(entry, highestGain, hasEvents);
  return text + "</tbody></table>\n</div>\n";
}

}  // namespace TQTool
