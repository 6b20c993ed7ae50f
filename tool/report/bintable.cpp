#include "report/bintable.h"

#include <algorithm>
#include <vector>

#include <fmt/format.h>

#include "model/recount.h"
#include "output/modelwords.h"
#include "report/html.h"

namespace TQTool {
namespace {

constexpr std::size_t kManyRows = 30;  // more of them scroll in a box of their own

// What the columns of one table are.
struct Columns {
  bool hasRows = false;    // unweighted counts beside the weights
  bool hasShares = false;  // of the categories within the bin
  bool hasEvents = false;  // event rate and what follows from it
};

Columns ColumnsOf(const ShownBins& shown, const Model& model) {
  const std::vector<Bin>& bins = shown.attribute.bins;
  Columns columns;
  columns.hasRows =
      !model.settings.weight.empty() && std::any_of(bins.begin(), bins.end(), [](const Bin& bin) {
        return bin.count.rows != TQMV::gMissingValue;
      });
  columns.hasEvents = shown.categories.size() == 2;
  columns.hasShares = shown.categories.size() > 2;
  return columns;
}

std::string Cell(const std::string& text) { return "<td>" + text + "</td>"; }

std::string Number(double number) { return Grouped(WeightText(number)); }

std::string ColumnHeading(const std::string& html) { return "<th scope=\"col\">" + html + "</th>"; }

std::string WriteHeading(const Columns& columns, const ShownBins& shown, const Model& model) {
  std::string row = "<thead><tr>" + ColumnHeading("Bin");
  row += ColumnHeading(model.settings.weight.empty() ? "Rows" : "Weight");
  if (columns.hasRows) row += ColumnHeading("Rows");
  row += ColumnHeading("Share");
  for (const std::string& category : shown.categories) row += ColumnHeading(Isolated(category));
  if (columns.hasEvents) {
    row += ColumnHeading("Event rate") +
           ColumnHeading("<abbr title=\"weight of evidence\">WoE</abbr>") +
           ColumnHeading("<abbr title=\"information value\">IV</abbr>");
  }
  return row + "</tr></thead>\n";
}

// The cells of a number of cases, the whole of them, and its categories.
std::string CountCells(const Columns& columns, const Bin& bin, double whole) {
  std::string cells = Cell(Number(bin.count.weight));
  if (columns.hasRows) cells += Cell(Number(bin.count.rows));
  cells += Cell(ShareText(bin.count.weight, whole));
  for (const Count& count : bin.categories) {
    std::string text = Number(count.weight);
    if (columns.hasShares) {
      text += " <span class=\"soft\">" + ShareText(count.weight, bin.count.weight) + "</span>";
    }
    cells += Cell(text);
  }
  return cells;
}

std::string EventCells(double rate, const std::string& evidence, double value) {
  return Cell(ShareText(rate, 1.0)) + Cell(evidence) + Cell(Fixed(value, 4));
}

std::string UnknownEvents() { return Cell("?") + Cell("?") + Cell("?"); }

std::string Row(const std::string& name, const std::string& cells) {
  return "<tr><th scope=\"row\">" + name + "</th>" + cells + "</tr>\n";
}

std::string WriteBody(const Columns& columns, const ReportEntry& entry, const ShownBins& shown) {
  // Joined bins have measures of their own.
  const std::optional<Measures> measures = MeasuresOf(shown.attribute);
  std::string body = "<tbody>\n";
  for (std::size_t b = 0; b < shown.attribute.bins.size(); ++b) {
    std::string cells = CountCells(columns, shown.attribute.bins[b], entry.attribute->total.weight);
    if (columns.hasEvents && measures.has_value()) {
      const Measures::OfBin& bin = measures->bins.at(b);
      cells += EventCells(bin.eventRate, Fixed(bin.weightOfEvidence, 3), bin.informationValue);
    } else if (columns.hasEvents) {
      cells += UnknownEvents();
    }
    body += Row(Isolated(LabelOf(shown.attribute, b)), cells);
  }
  return body + "</tbody>\n";
}

// The row of all bins together.
std::string TotalRow(const Columns& columns, const ReportEntry& entry, const ShownBins& shown) {
  Bin total;
  total.count = entry.attribute->valid;
  for (std::size_t c = 0; c < shown.categories.size(); ++c) {
    total.categories.push_back({shown.TotalOf(c), TQMV::gMissingValue});
  }
  std::string cells = CountCells(columns, total, entry.attribute->total.weight);
  if (columns.hasEvents && entry.measures.has_value()) {
    const double events = total.categories[1].weight;
    const double all = events + total.categories[0].weight;
    const double rate = all > 0.0 ? events / all : TQMV::gMissingValue;
    cells += EventCells(rate, "", entry.measures->informationValue);
  } else if (columns.hasEvents) {
    cells += UnknownEvents();
  }
  return Row("Total", cells);
}

// The row of the cases without a value or a category; "" when there are none.
std::string MissingRow(const Columns& columns, const ReportEntry& entry, const ShownBins& shown) {
  Bin missing;
  missing.count = MissingOf(*entry.attribute);
  if (!(missing.count.weight > 0.0)) return "";
  std::string cells = CountCells(columns, missing, entry.attribute->total.weight);
  const std::size_t empty = shown.categories.size() + (columns.hasEvents ? 3 : 0);
  for (std::size_t e = 0; e < empty; ++e) cells += Cell("");
  return Row("Missing", cells);
}

std::string Caption(const ReportEntry& entry, const ShownBins& shown, const Model& model) {
  std::string text = "Bins of " + Isolated(entry.attribute->name);
  if (entry.target == nullptr) return text;
  text += fmt::format(": {} by {}", model.settings.weight.empty() ? "rows" : "weights",
                      Isolated(entry.target->name));
  if (shown.categories.size() == 2) text += ", the event is " + Isolated(shown.categories[1]);
  return text;
}

}  // namespace

std::string WriteBinTable(const ReportEntry& entry, const ShownBins& shown, const Model& model) {
  const Columns columns = ColumnsOf(shown, model);
  const bool isTall = shown.attribute.bins.size() > kManyRows;
  return fmt::format(
      "<div class=\"scroll{}\" role=\"group\" aria-labelledby=\"{}c\" tabindex=\"0\">\n"
      "<table class=\"bins\"><caption id=\"{}c\">{}</caption>\n{}{}<tfoot>\n{}{}</tfoot></table>\n"
      "</div>\n",
      isTall ? " tall" : "", entry.id, entry.id, Caption(entry, shown, model),
      WriteHeading(columns, shown, model), WriteBody(columns, entry, shown),
      TotalRow(columns, entry, shown), MissingRow(columns, entry, shown));
}

}  // namespace TQTool
