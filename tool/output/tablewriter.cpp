#include "output/tablewriter.h"

#include <fmt/format.h>

#include "output/bingrid.h"
#include "output/modelwords.h"
#include "output/textgrid.h"

namespace TQTool {
namespace {

constexpr const char* kBold = "\x1b[1m";
constexpr const char* kRed = "\x1b[31m";
constexpr const char* kYellow = "\x1b[33m";
constexpr const char* kPlain = "\x1b[0m";

std::string Colored(const std::string& text, const char* color, const TableStyle& style) {
  return style.isColored ? color + text + kPlain : text;
}

// Bins are plain, trouble is not.
std::string Outcome(const BinnedAttribute& attribute, const Model& model, const TableStyle& style) {
  std::string text = OutcomeOf(attribute, model);
  if (attribute.status.IsOK()) return text;
  return Colored(text, attribute.status.IsError() ? kRed : kYellow, style);
}

std::string Section(const BinnedAttribute& attribute, const Model& model, const TableStyle& style) {
  std::string text = fmt::format("\n{}: {}\n", Colored(NameOf(attribute, model), kBold, style),
                                 Outcome(attribute, model, style));
  if (!attribute.status.IsOK()) text += fmt::format("  what to do: {}\n", RemedyOf(attribute));
  text += fmt::format("  {}\n", FindingsOf(attribute));
  if (const std::string gain = GainOf(attribute); !gain.empty()) text += "  " + gain + "\n";
  if (attribute.bins.empty()) return text;
  TextGrid grid;
  for (std::vector<std::string>& row : BinGrid(attribute, model)) grid.AddRow(std::move(row));
  return text + grid.Print(style.width);
}

}  // namespace

std::string WriteTable(const Model& model, const TableStyle& style) {
  std::string text = TitleOf(model) + "\n" + RowsOf(model) + "\n";
  for (const BinnedAttribute& attribute : model.attributes) {
    text += Section(attribute, model, style);
  }
  return text;
}

}  // namespace TQTool
