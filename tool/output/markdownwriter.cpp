#include "output/markdownwriter.h"

#include <string_view>

#include <fmt/format.h>

#include "output/bingrid.h"
#include "output/modelwords.h"

namespace TQTool {
namespace {

// Text without markup: what could begin any is escaped.
std::string Escaped(std::string_view text) {
  constexpr std::string_view kMarkup = "\\`*_[<>|~&#$";
  std::string result;
  for (const char c : text) {
    if (kMarkup.find(c) != std::string_view::npos) result += '\\';
    result += c;
  }
  return result;
}

std::string Line(const std::vector<std::string>& cells, std::size_t numColumns) {
  std::string line = "|";
  for (std::size_t i = 0; i < numColumns; ++i) {
    line += fmt::format(" {} |", i < cells.size() ? Escaped(cells[i]) : "");
  }
  return line + "\n";
}

// Names flush left, numbers flush right.
std::string Table(const std::vector<std::vector<std::string>>& rows) {
  const std::size_t numColumns = rows.front().size();
  std::string text = Line(rows.front(), numColumns) + "| :--- |";
  for (std::size_t i = 1; i < numColumns; ++i) text += " ---: |";
  text += "\n";
  for (std::size_t i = 1; i < rows.size(); ++i) text += Line(rows[i], numColumns);
  return text;
}

std::string Section(const BinnedAttribute& attribute, const Model& model) {
  std::string text = fmt::format("\n## {}\n\n{}\n", Escaped(NameOf(attribute, model)),
                                 Escaped(OutcomeOf(attribute, model)));
  if (!attribute.status.IsOK()) {
    text += fmt::format("\nWhat to do: {}\n", Escaped(RemedyOf(attribute)));
  }
  text += fmt::format("\n{}\n", Escaped(FindingsOf(attribute)));
  if (const std::string gain = GainOf(attribute); !gain.empty()) text += "\n" + gain + "\n";
  return attribute.bins.empty() ? text : text + "\n" + Table(BinGrid(attribute, model));
}

}  // namespace

std::string WriteMarkdown(const Model& model) {
  std::string text = fmt::format("# {}\n\n{}\n", Escaped(TitleOf(model)), Escaped(RowsOf(model)));
  for (const BinnedAttribute& attribute : model.attributes) text += Section(attribute, model);
  return text;
}

}  // namespace TQTool
