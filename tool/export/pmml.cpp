#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "base/plaintext.h"
#include "base/toolerror.h"
#include "base/version.h"
#include "export/binlist.h"
#include "export/formats.h"

namespace TQTool {
namespace {

constexpr const char* kHeading = R"(<?xml version="1.0" encoding="UTF-8"?>
<PMML xmlns="http://www.dmg.org/PMML-4_4" version="4.4">
  <Header description="The bins of numeric columns">
    <Application name="tqbin" version="{}"/>
  </Header>
)";

// Whether XML 1.0 has no way to write a text: most control characters, and the two
// code points U+FFFE and U+FFFF.
bool IsBeyondXml(const std::string& text) {
  const auto isControl = [](char byte) {
    return static_cast<unsigned char>(byte) < 0x20 && byte != '\t' && byte != '\n' && byte != '\r';
  };
  return std::any_of(text.begin(), text.end(), isControl) ||
         text.find("\xEF\xBF\xBE") != std::string::npos ||
         text.find("\xEF\xBF\xBF") != std::string::npos;
}

// An attribute's value in quotes.  Tabs and line ends would be read as blanks.
std::string Literal(const std::string& text) {
  if (IsBeyondXml(text)) {
    throw ToolError(kInput, fmt::format("{} cannot be written in PMML, which has no such control "
                                        "characters; rename it, or choose another --format",
                                        Quoted(text)));
  }
  std::string result = "\"";
  for (const char byte : text) {
    switch (byte) {
      case '&': result += "&amp;"; break;
      case '<': result += "&lt;"; break;
      case '>': result += "&gt;"; break;
      case '"': result += "&quot;"; break;
      case '\t':
      case '\n':
      case '\r': result += fmt::format("&#{};", static_cast<int>(byte)); break;
      default: result += byte;
    }
  }
  return result + "\"";
}

// What is left of a bin outside a range: nothing, one piece or two.
std::vector<ExportBin> WithoutRange(const ExportBin& bin, const ClosedRange& range) {
  if (range.upper < bin.lower || range.lower > bin.upper) return {bin};
  ExportBin below = bin;
  below.upper = range.lower;
  below.isUpperClosed = false;
  ExportBin above = bin;
  above.lower = range.upper;
  above.isLowerClosed = false;
  std::vector<ExportBin> pieces;
  for (const ExportBin& piece : {below, above}) {
    if (piece.lower < piece.upper) pieces.push_back(piece);
  }
  return pieces;
}

std::string IntervalElement(const ExportBin& bin) {
  return fmt::format("<Interval closure=\"{}{}\" leftMargin=\"{}\" rightMargin=\"{}\"/>",
                     bin.isLowerClosed ? "closed" : "open", bin.isUpperClosed ? "Closed" : "Open",
                     bin.lower, bin.upper);
}

// What is left of a bin without the numbers that are missing.
std::vector<ExportBin> PiecesOf(const ExportBin& bin, const MissingRule& missing) {
  std::vector<ClosedRange> ranges;
  for (const double number : missing.numbers) ranges.push_back({number, number});
  if (missing.range.has_value()) ranges.push_back(*missing.range);
  std::vector<ExportBin> pieces = {bin};
  for (const ClosedRange& range : ranges) {
    std::vector<ExportBin> left;
    for (const ExportBin& piece : pieces) {
      for (const ExportBin& rest : WithoutRange(piece, range)) left.push_back(rest);
    }
    pieces.swap(left);
  }
  return pieces;
}

// A column of numbers, and the texts that stand for a missing one.
std::string DataField(const ExportColumn& column, const BinList& list) {
  const std::set<std::string> missing(list.missingTexts.begin(), list.missingTexts.end());
  std::string text = fmt::format(
      "    <DataField name={} optype=\"continuous\" dataType=\"double\">\n", Literal(column.name));
  for (const std::string& value : missing) {
    text += fmt::format("      <Value value={} property=\"missing\"/>\n", Literal(value));
  }
  return text + "    </DataField>\n";
}

// A column of bins.  Missing numbers lie in no interval, and so in no bin: what is missing
// depends on the attribute, of which one column may have several.
std::string DerivedField(const ExportColumn& column, bool areIndexes) {
  const char* const type = areIndexes ? "integer" : "string";
  std::string text = fmt::format(
      "    <DerivedField name={} optype=\"{}\" dataType=\"{}\">\n"
      "      <Discretize field={} dataType=\"{}\">\n",
      Literal(column.binsName), areIndexes ? "ordinal" : "categorical", type, Literal(column.name),
      type);
  for (const ExportBin& bin : column.bins) {
    for (const ExportBin& piece : PiecesOf(bin, column.missing)) {
      text += fmt::format("        <DiscretizeBin binValue={}>{}</DiscretizeBin>\n",
                          Literal(bin.text), IntervalElement(piece));
    }
  }
  return text + "      </Discretize>\n    </DerivedField>\n";
}

}  // namespace

std::string WritePmml(const BinList& list) {
  std::set<std::string> names;  // a column that is binned against several targets is one field
  std::string fields;
  std::string derived;
  for (const ExportColumn& column : list.columns) {
    if (names.insert(column.name).second) fields += DataField(column, list);
    derived += DerivedField(column, list.areIndexes);
  }
  return fmt::format(kHeading, kVersion) +
         fmt::format(
             "  <DataDictionary numberOfFields=\"{}\">\n{}  </DataDictionary>\n"
             "  <TransformationDictionary>\n{}  </TransformationDictionary>\n</PMML>\n",
             names.size(), fields, derived);
}

}  // namespace TQTool
